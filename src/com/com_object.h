// ComObject: reference counting and QueryInterface for the small COM objects of the door. The
// objects of the model have faces instead (face.h).
#pragma once

#include "com/com.h"
#include "com/host_reference.h"

namespace vndoc6::com {

// Derive with the interfaces that the object answers to. Created with one reference, the creator's.
template <class First, class... Others>
class ComObject : public First, public Others... {
 public:
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (iid == IID_IUnknown) {
      *out = static_cast<First*>(this);
    } else {
      Offer<First>(iid, out);
      (Offer<Others>(iid, out), ...);
    }
    if (*out == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++count_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --count_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  ComObject() = default;
  virtual ~ComObject() = default;

 private:
  template <class Interface>
  void Offer(REFIID iid, void** out) {
    if (iid == __uuidof(Interface)) *out = static_cast<Interface*>(this);
  }

  const HostReference reference_;
  ULONG count_ = 1;
};

template <class T, class... Args>
ComPtr<T> MakeCom(Args&&... args) {
  return ComPtr<T>::Adopt(new T(std::forward<Args>(args)...));
}

}  // namespace vndoc6::com
