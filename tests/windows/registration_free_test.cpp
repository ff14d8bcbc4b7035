// A program that has the manifest beside the DLL uses the library without any registration.
#include "tests/windows/server.h"

namespace vndoc6::com {
namespace {

class ActivationContext {
 public:
  explicit ActivationContext(const Text& manifest) {
    ACTCTXW description{};
    description.cbSize = sizeof description;
    description.lpSource = AsWide(manifest);
    context_ = CreateActCtxW(&description);
    active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_) != FALSE;
  }
  ActivationContext(const ActivationContext&) = delete;
  ActivationContext& operator=(const ActivationContext&) = delete;
  ~ActivationContext() {
    if (active_) DeactivateActCtx(0, cookie_);
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
  }
  bool active() const { return active_; }

 private:
  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

TEST(RegistrationFreeTest, EveryClassIsCreatedByItsName) {
  ASSERT_TRUE(SUCCEEDED(OleInitialize(nullptr)));
  {
    const Text folder = Server::Path().substr(0, Server::Path().rfind(u'\\') + 1);
    const ActivationContext context(folder + u"VNDoc6.manifest");
    ASSERT_TRUE(context.active());
    for (const PublishedClass& published : PublishedClasses()) {
      const automation::ClassInfo& info = published.info();
      SCOPED_TRACE(info.name());
      CLSID class_id{};
      const Text name = u"VNDoc6." + automation::FromUtf8(info.name());
      // Gives an identifier of the context's own, which stands for the class.
      ASSERT_EQ(CLSIDFromProgID(AsWide(name), &class_id), S_OK);
      void* object = nullptr;
      ASSERT_EQ(CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER,
                                 ToIid(info.interface_id()), &object),
                S_OK);
      static_cast<IUnknown*>(object)->Release();
    }
  }
  OleUninitialize();
}

}  // namespace
}  // namespace vndoc6::com
