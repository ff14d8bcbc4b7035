// ComEnumerator: the platform's enumerator interfaces (IEnumVARIANT, IEnumConnections, ...), which
// differ only in what they give out, over anything that can walk: Next(item), Skip(count), Reset().
#pragma once

#include <vector>

#include "com/com_object.h"
#include "com/entry.h"
#include "com/variants.h"
#include "vndoc6/automation/enumerator.h"

namespace vndoc6::com {

// A walk over a list of its own.
template <class T>
class Snapshot {
 public:
  using Item = T;
  explicit Snapshot(std::vector<T> items) : items_(std::move(items)) {}

  bool Next(T& item) {
    if (position_ >= items_.size()) return false;
    item = items_[position_++];
    return true;
  }
  bool Skip(size_t count) {
    const bool enough = count <= items_.size() - position_;
    position_ = enough ? position_ + count : items_.size();
    return enough;
  }
  void Reset() { position_ = 0; }
  Snapshot Clone() const { return *this; }

 private:
  std::vector<T> items_;
  size_t position_ = 0;
};

// A walk over a collection of the model.
class ObjectWalk {
 public:
  using Item = automation::Ref<automation::Object>;
  explicit ObjectWalk(automation::Ref<automation::Enumerator> enumerator)
      : enumerator_(std::move(enumerator)) {}

  bool Next(Item& item) { return enumerator_->Next(item); }
  bool Skip(size_t count) { return enumerator_->Skip(count); }
  void Reset() { enumerator_->Reset(); }
  ObjectWalk Clone() const { return ObjectWalk(enumerator_->Clone()); }

 private:
  automation::Ref<automation::Enumerator> enumerator_;
};

struct ConnectedSink {
  ComPtr<IUnknown> sink;
  DWORD cookie;
};

// How an item is given out. What a caller received is its own to release.
inline void GiveOut(const automation::Ref<automation::Object>& item, VARIANT& out) {
  WriteVariant(automation::Variant(item), out);
}
inline void GiveOut(ComPtr<IConnectionPoint> item, IConnectionPoint*& out) { out = item.Detach(); }
inline void GiveOut(ConnectedSink item, CONNECTDATA& out) {
  out = {item.sink.Detach(), item.cookie};
}
inline void TakeBack(VARIANT& out) { VariantClear(&out); }
inline void TakeBack(IConnectionPoint*& out) { std::exchange(out, nullptr)->Release(); }
inline void TakeBack(CONNECTDATA& out) { std::exchange(out.pUnk, nullptr)->Release(); }

// What an enumerator interface gives out: the type that its Next fills in.
template <class Interface>
struct GivenOut;
template <>
struct GivenOut<IEnumVARIANT> {
  using Type = VARIANT;
};
template <>
struct GivenOut<IEnumConnectionPoints> {
  using Type = IConnectionPoint*;
};
template <>
struct GivenOut<IEnumConnections> {
  using Type = CONNECTDATA;
};

template <class Interface, class Walk>
class ComEnumerator final : public ComObject<Interface> {
 public:
  using Out = typename GivenOut<Interface>::Type;
  explicit ComEnumerator(Walk walk) : walk_(std::move(walk)) {}

  STDMETHODIMP Next(ULONG count, Out* out, ULONG* fetched) override {
    if (fetched != nullptr) *fetched = 0;
    if (out == nullptr || (fetched == nullptr && count != 1)) return E_POINTER;
    ULONG given = 0;
    const HRESULT code = Enter([&] {
      typename Walk::Item item{};
      while (given < count && walk_.Next(item)) {
        GiveOut(item, out[given]);
        ++given;
      }
      return given == count ? S_OK : S_FALSE;
    });
    if (FAILED(code)) {
      while (given > 0) TakeBack(out[--given]);
    }
    if (fetched != nullptr) *fetched = given;
    return code;
  }
  STDMETHODIMP Skip(ULONG count) override { return walk_.Skip(count) ? S_OK : S_FALSE; }
  STDMETHODIMP Reset() override {
    walk_.Reset();
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** clone) override {
    if (clone == nullptr) return E_POINTER;
    *clone = nullptr;
    return Enter([&] {
      *clone = MakeCom<ComEnumerator>(walk_.Clone()).Detach();
      return S_OK;
    });
  }

 private:
  Walk walk_;
};

}  // namespace vndoc6::com
