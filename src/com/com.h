// The platform's COM headers, counted interface pointers and automation strings.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// A window function; here the name of a method of our objects and of IProvideClassInfo.
#undef GetClassInfo

#include <ole2.h>
#include <oleauto.h>
#include <olectl.h>

#include <cstring>
#include <utility>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/text.h"

namespace vndoc6::com {

// A counted interface pointer.
template <class T>
class ComPtr {
 public:
  ComPtr() = default;
  explicit ComPtr(T* pointer) : pointer_(pointer) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_ != nullptr) pointer_->Release();
  }

  // Takes over a reference that the caller owns.
  static ComPtr Adopt(T* pointer) {
    ComPtr adopted;
    adopted.pointer_ = pointer;
    return adopted;
  }
  // Another interface of the object; null when it has none such, or when this is null.
  template <class Wanted>
  ComPtr<Wanted> As(const IID& iid = __uuidof(Wanted)) const {
    void* found = nullptr;
    if (pointer_ == nullptr || FAILED(pointer_->QueryInterface(iid, &found))) return {};
    return ComPtr<Wanted>::Adopt(static_cast<Wanted*>(found));
  }

  T* get() const { return pointer_; }
  T* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }
  // Gives the reference to the caller.
  T* Detach() { return std::exchange(pointer_, nullptr); }
  // Where a function puts the reference that it gives out.
  T** Receive() {
    *this = {};
    return &pointer_;
  }

 private:
  T* pointer_ = nullptr;
};

inline IID ToIid(const automation::Guid& guid) {
  IID iid{guid.data1, guid.data2, guid.data3, {}};
  std::memcpy(iid.Data4, guid.data4, sizeof iid.Data4);
  return iid;
}

// Windows' strings are UTF-16 too, under another name of the code unit.
inline TextView AsText(const wchar_t* units, size_t length) {
  return {reinterpret_cast<const char16_t*>(units), length};
}
inline TextView AsText(const wchar_t* units) { return AsText(units, std::wcslen(units)); }
inline const wchar_t* AsWide(const Text& text) {
  return reinterpret_cast<const wchar_t*>(text.c_str());
}
// A null automation string is the empty text.
inline TextView BstrText(BSTR string) { return AsText(string, SysStringLen(string)); }
// A new automation string, the caller's to free; null when there is no memory.
inline BSTR TryMakeBstr(TextView text) {
  return SysAllocStringLen(reinterpret_cast<const wchar_t*>(text.data()),
                           static_cast<UINT>(text.size()));
}
// The same; raises std::bad_alloc.
BSTR MakeBstr(TextView text);

// An automation string that frees itself.
class OwnedBstr {
 public:
  OwnedBstr() = default;
  explicit OwnedBstr(TextView text) : string_(MakeBstr(text)) {}
  OwnedBstr(OwnedBstr&& other) noexcept : string_(std::exchange(other.string_, nullptr)) {}
  OwnedBstr& operator=(OwnedBstr other) noexcept {
    std::swap(string_, other.string_);
    return *this;
  }
  ~OwnedBstr() { SysFreeString(string_); }

  BSTR get() const { return string_; }
  TextView text() const { return BstrText(string_); }
  BSTR Detach() { return std::exchange(string_, nullptr); }
  BSTR* Receive() { return &string_; }

 private:
  BSTR string_ = nullptr;
};

// A VARIANT that clears itself.
class OwnedVariant : public VARIANT {
 public:
  OwnedVariant() { VariantInit(this); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { VariantClear(this); }
};

}  // namespace vndoc6::com
