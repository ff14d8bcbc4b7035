#include "com/platform_services.h"

#include "com/entry.h"
#include "com/objects.h"
#include "com/standard_font.h"
#include "com/standard_picture.h"
#include "vndoc6/automation/services.h"

namespace vndoc6::com {
namespace {

using namespace automation;

// Null when there is no such class; a class that is there but fails to start raises its error.
Ref<Object> CreatePlatformObject(TextView programmatic_id) {
  CLSID class_id{};
  if (FAILED(CLSIDFromProgID(AsWide(Text(programmatic_id)), &class_id))) return {};
  void* object = nullptr;
  const HRESULT code = CoCreateInstance(class_id, nullptr, CLSCTX_SERVER, IID_IUnknown, &object);
  if (code == REGDB_E_CLASSNOTREG) return {};
  Check(code);
  const auto created = ComPtr<IUnknown>::Adopt(static_cast<IUnknown*>(object));
  return ImportObject(created.get());
}

}  // namespace

void UsePlatformServices() {
  Services platform = services();
  platform.make_font = &MakeStandardFont;
  platform.make_picture = [](std::vector<uint8_t> bytes) -> Ref<Picture> {
    return Make<StandardPicture>(std::move(bytes));
  };
  platform.create_object = &CreatePlatformObject;
  UseServices(std::move(platform));
}

}  // namespace vndoc6::com
