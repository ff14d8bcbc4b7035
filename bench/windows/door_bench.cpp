// What a call through the COM door costs, beside the customary implementation in the same run: a
// dual interface whose IDispatch goes through ITypeInfo::Invoke.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

#include "VNDoc6.h"
#include "com/com_object.h"
#include "vndoc6/published/published.h"

namespace vndoc6::com {
namespace {

constexpr const wchar_t* kModule = L"VNDoc6.dll";

ComPtr<ITypeInfo> TypeInfoOf(REFGUID guid) {
  ComPtr<ITypeLib> library;
  ComPtr<ITypeInfo> type_info;
  if (SUCCEEDED(LoadTypeLibEx(kModule, REGKIND_NONE, library.Receive()))) {
    library->GetTypeInfoOfGuid(guid, type_info.Receive());
  }
  return type_info;
}

// The customary implementation of an interface of ours.
class CustomaryItem final : public ComObject<_vnItem> {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    *count = 1;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** type_info) override {
    *type_info = ComPtr<ITypeInfo>(type_info_).Detach();
    return S_OK;
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    return type_info_->GetIDsOfNames(names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* params, VARIANT* result,
                      EXCEPINFO* exception, UINT* argument) override {
    return type_info_->Invoke(static_cast<_vnItem*>(this), id, flags, params, result, exception,
                              argument);
  }

  STDMETHODIMP get_Document(_vnDocument** result) override {
    *result = nullptr;
    return S_OK;
  }
  STDMETHODIMP get_ID(LONG* result) override {
    *result = id_;
    return S_OK;
  }
  STDMETHODIMP put_ID(LONG id) override {
    id_ = id;
    return S_OK;
  }
  STDMETHODIMP get_DisplayName(BSTR* result) override { return Copy(display_name_, result); }
  STDMETHODIMP put_DisplayName(BSTR name) override {
    display_name_ = OwnedBstr(BstrText(name));
    return S_OK;
  }
  STDMETHODIMP get_Description(BSTR* result) override { return Copy(display_name_, result); }
  STDMETHODIMP put_Description(BSTR) override { return E_NOTIMPL; }
  STDMETHODIMP get_Items(_vnItems** result) override {
    *result = nullptr;
    return S_OK;
  }

 private:
  static HRESULT Copy(const OwnedBstr& from, BSTR* result) {
    *result = SysAllocStringLen(from.get(), SysStringLen(from.get()));
    return S_OK;
  }
  const ComPtr<ITypeInfo> type_info_ = TypeInfoOf(__uuidof(_vnItem));
  LONG id_ = 0;
  OwnedBstr display_name_;
};

// Nanoseconds for one call: the best of several rounds, which the rest of the machine disturbs
// least.
double Measure(const std::function<void(int)>& calls) {
  using Clock = std::chrono::steady_clock;
  constexpr int kCalls = 20000;
  double best = 1e12;
  for (int round = 0; round < 25; ++round) {
    const auto start = Clock::now();
    calls(kCalls);
    best = std::min(best, std::chrono::duration<double, std::nano>(Clock::now() - start).count());
  }
  return best / kCalls;
}

double MeasureGet(IDispatch& object, DISPID id) {
  return Measure([&](int count) {
    DISPPARAMS none{};
    for (int i = 0; i < count; ++i) {
      VARIANT result;
      object.Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, &result, nullptr, nullptr);
      VariantClear(&result);
    }
  });
}

double MeasurePut(IDispatch& object, DISPID id, VARIANT value) {
  return Measure([&](int count) {
    DISPID name = DISPID_PROPERTYPUT;
    DISPPARAMS params{&value, &name, 1, 1};
    for (int i = 0; i < count; ++i) {
      object.Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
    }
  });
}

template <class Lookup>
double MeasureName(Lookup& lookup, const wchar_t* name) {
  return Measure([&](int count) {
           auto* units = const_cast<wchar_t*>(name);
           DISPID id = 0;
           for (int i = 0; i < count / 20; ++i) lookup(&units, &id);
         }) *
         20;
}

struct Nothing {
  virtual ~Nothing() = default;
  virtual long Call(long* out) = 0;
};
struct NothingMuch final : Nothing {
  __attribute__((noinline)) long Call(long* out) override {
    *out = 0;
    asm volatile("" ::: "memory");  // a call that the compiler can't leave out
    return 0;
  }
};

double MeasureSlot(_vnItem& item) {
  return Measure([&](int count) {
    LONG id = 0;
    for (int i = 0; i < count; ++i) item.get_ID(&id);
  });
}

double MeasureEmptyCall() {
  NothingMuch much;
  Nothing* volatile hidden = &much;
  Nothing& nothing = *hidden;
  return Measure([&](int count) {
    long out = 0;
    for (int i = 0; i < count; ++i) nothing.Call(&out);
  });
}

void Print(const char* what, double ours, double theirs, double goal) {
  std::printf("%-36s %9.1f ns %9.1f ns   %6.3f   (goal %.3f)%s\n", what, ours, theirs,
              ours / theirs, goal, ours / theirs <= goal ? "" : "  MISSED");
}

ComPtr<IDispatch> CreatePublished(std::string_view name) {
  const HMODULE module = LoadLibraryW(kModule);
  using GetClassObject = HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**);
  auto* const get = reinterpret_cast<GetClassObject*>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  for (const PublishedClass& published : PublishedClasses()) {
    if (published.info().name() != name) continue;
    void* factory = nullptr;
    get(ToIid(published.info().class_id()), IID_IClassFactory, &factory);
    void* object = nullptr;
    const auto owned = ComPtr<IClassFactory>::Adopt(static_cast<IClassFactory*>(factory));
    owned->CreateInstance(nullptr, IID_IDispatch, &object);
    return ComPtr<IDispatch>::Adopt(static_cast<IDispatch*>(object));
  }
  return {};
}

void Run() {
  const auto ours = CreatePublished("vnItem");
  const auto chart = CreatePublished("vnChart");
  const auto theirs = MakeCom<CustomaryItem>();
  const auto item = ours.As<_vnItem>();
  constexpr DISPID kId = 2, kDisplayName = 3;
  VARIANT number{}, text{};
  number.vt = VT_I4;
  number.lVal = 7;
  const OwnedBstr name(u"A name of ordinary length");
  text.vt = VT_BSTR;
  text.bstrVal = name.get();

  std::printf("%-36s %12s %12s   %6s\n", "", "VNDoc6", "customary", "ratio");
  Print("get a Long", MeasureGet(*ours.get(), kId), MeasureGet(*theirs.get(), kId), 0.1);
  Print("put a Long", MeasurePut(*ours.get(), kId, number), MeasurePut(*theirs.get(), kId, number),
        0.1);
  Print("put a text", MeasurePut(*ours.get(), kDisplayName, text),
        MeasurePut(*theirs.get(), kDisplayName, text), 1.0 / 3);
  Print("get a text", MeasureGet(*ours.get(), kDisplayName),
        MeasureGet(*theirs.get(), kDisplayName), 1.0 / 3);
  const ComPtr<ITypeInfo> type_info = TypeInfoOf(__uuidof(_vnChart));
  auto by_table = [&](LPOLESTR* names, DISPID* id) {
    chart->GetIDsOfNames(IID_NULL, names, 1, 0, id);
  };
  auto by_type_info = [&](LPOLESTR* names, DISPID* id) { type_info->GetIDsOfNames(names, 1, id); };
  Print("find the last of a chart's names", MeasureName(by_table, L"GRIDCOLOUR"),
        MeasureName(by_type_info, L"GRIDCOLOUR"), 0.05);
  std::printf("\n%-36s %12s %12s   %6s\n", "", "VNDoc6", "empty call", "ratio");
  Print("get a Long through the vtable", MeasureSlot(*item.get()), MeasureEmptyCall(), 3);
}

}  // namespace
}  // namespace vndoc6::com

int main() {
  if (FAILED(OleInitialize(nullptr))) return 1;
  vndoc6::com::Run();
  OleUninitialize();
}
