#include "copies.h"

namespace vndoc6::drawing {

namespace {

// A step that belongs to a document drops its dependencies on steps that are gone when it is saved.
// Without one it writes what it has, and a step that nobody has read copies its text.
class Detached {
 public:
  explicit Detached(vnStep& step) : step_(step), document_(step.Document()) {
    step_.SetDocument(nullptr);
  }
  ~Detached() { step_.SetDocument(document_.get()); }
  Detached(const Detached&) = delete;
  Detached& operator=(const Detached&) = delete;

 private:
  vnStep& step_;
  Ref<vnDocument> document_;
};

Text TextOf(vnStep& step) {
  const Detached detached(step);
  return step.Save();
}
Text TextOf(vnLink& link) { return link.Save(); }

template <class T>
Ref<T> Copy(T& original) {
  auto copy = Make<T>();
  copy->Load(TextOf(original), original.Key());
  copy->SetDocument(original.Document().get());
  return copy;
}

}  // namespace

Ref<vnStep> CopyToRead(vnStep& step) { return Copy(step); }
Ref<vnLink> CopyToRead(vnLink& link) { return Copy(link); }

}  // namespace vndoc6::drawing
