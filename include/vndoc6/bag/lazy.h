// Lazy<T>: an object that is kept as text until somebody reads it.
#pragma once

#include <utility>

#include "vndoc6/automation/object.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::bag {

// Either a kept text, or the object built from it or set in its place. Get and Set leave the first
// state, Reset comes back to it. T is held by Owned, so a host's reference outlives a Reset.
template <class T>
class Lazy {
 public:
  // The object; on the first read `make()` makes it and `load(object, text)` reads the kept text
  // into it. It is in its place before it is loaded, so that a host's handler that reads it while
  // it loads finds the same object.
  template <class MakeObject, class Load>
  automation::Ref<T> Get(MakeObject&& make, Load&& load) {
    if (object_) return object_.get();
    const automation::Ref<T> object = std::forward<MakeObject>(make)();
    const KeptText text = std::exchange(text_, {});
    object_ = automation::Owned<T>(object.get());
    try {
      std::forward<Load>(load)(*object, text);
    } catch (...) {
      Reset(text);
      throw;
    }
    return object;
  }
  T* built() const { return object_.get(); }
  const KeptText& text() const { return text_; }

  // Replaces what there is by an object; null goes back to an empty text.
  void Set(T* object) {
    object_ = automation::Owned<T>(object);
    text_ = {};
  }
  // Drops the object, if any, and keeps this text instead.
  void Reset(KeptText text) {
    text_ = std::move(text);
    object_ = nullptr;
  }

 private:
  KeptText text_;
  automation::Owned<T> object_;
};

}  // namespace vndoc6::bag
