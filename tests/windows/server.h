// The built DLL, loaded from beside the test program: no registration is needed.
#pragma once

#include <gmock/gmock.h>

#include "com/com.h"
#include "vndoc6/published/published.h"

namespace vndoc6::com {

class Server {
 public:
  Server() : module_(LoadLibraryW(AsWide(Path()))) {}
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() { FreeLibrary(module_); }

  static Text Path() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    const Text program(AsText(path, length));
    return program.substr(0, program.rfind(u'\\') + 1) + u"VNDoc6.dll";
  }

  // A function that the DLL exports.
  template <class Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }
  unsigned long LiveObjects() const {
    return Find<unsigned long STDMETHODCALLTYPE()>("VNDoc6LiveObjects")();
  }
  HRESULT CanUnloadNow() const { return Find<HRESULT STDMETHODCALLTYPE()>("DllCanUnloadNow")(); }
  HRESULT Install(bool install, const wchar_t* scope) const {
    return Find<HRESULT STDMETHODCALLTYPE(BOOL, LPCWSTR)>("DllInstall")(install, scope);
  }

  ComPtr<IClassFactory> Factory(REFCLSID class_id) const {
    using GetClassObject = HRESULT STDMETHODCALLTYPE(REFCLSID, REFIID, void**);
    void* factory = nullptr;
    Find<GetClassObject>("DllGetClassObject")(class_id, IID_IClassFactory, &factory);
    return ComPtr<IClassFactory>::Adopt(static_cast<IClassFactory*>(factory));
  }
  // A new object of the class with that name ("vnDocument").
  ComPtr<IDispatch> Create(std::string_view class_name) const {
    for (const PublishedClass& published : PublishedClasses()) {
      if (published.info().name() != class_name) continue;
      void* object = nullptr;
      Factory(ToIid(published.info().class_id()))->CreateInstance(nullptr, IID_IDispatch, &object);
      return ComPtr<IDispatch>::Adopt(static_cast<IDispatch*>(object));
    }
    return {};
  }

 private:
  const HMODULE module_;
};

// Every test ends without an object in the DLL.
class ServerTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr))); }
  void TearDown() override {
    EXPECT_EQ(server_.LiveObjects(), 0u);
    EXPECT_EQ(server_.CanUnloadNow(), S_OK);
    OleUninitialize();
  }
  const Server server_;
};

}  // namespace vndoc6::com
