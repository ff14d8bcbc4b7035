#include "com/objects.h"

#include "com/com_enumerator.h"
#include "com/face.h"
#include "com/foreign_object.h"
#include "com/standard_font.h"
#include "com/standard_picture.h"
#include "vndoc6/automation/enumerator.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::com {
namespace {

using namespace automation;

ComPtr<IDispatch> ExportPlatformObject(const ComPtr<IUnknown>& object) {
  ComPtr<IDispatch> dispatch = object.As<IDispatch>();
  if (!dispatch) throw Error(kTypeMismatch);
  return dispatch;
}

template <class Interface>
ComPtr<IUnknown> Unknown(const ComPtr<Interface>& pointer) {
  return ComPtr<IUnknown>(pointer.get());
}

// A foreign enumeration as a snapshot of its objects.
Ref<Object> ImportEnumeration(IEnumVARIANT& enumeration) {
  std::vector<Ref<Object>> members;
  for (;;) {
    OwnedVariant member;
    const HRESULT code = enumeration.Next(1, &member, nullptr);
    Check(code);
    if (code != S_OK) return Make<Enumerator>(std::move(members));
    members.push_back(ReadVariant(member).ToObject());
  }
}

}  // namespace

bool IsEnumerator(const Object& object) {
  return object.GetClassInfo() == nullptr && dynamic_cast<const Enumerator*>(&object) != nullptr;
}

ComPtr<IUnknown> ExportEnumerator(Object& enumerator) {
  const Ref<Enumerator> walk(&dynamic_cast<Enumerator&>(enumerator));
  return Unknown(MakeCom<ComEnumerator<IEnumVARIANT, ObjectWalk>>(ObjectWalk(walk)));
}

ComPtr<IDispatch> ExportObject(Object& object) {
  const ClassInfo* info = object.GetClassInfo();
  if (info != nullptr && info != &Font::classInfo()) return Face::Of(object);
  if (const auto* font = dynamic_cast<StandardFont*>(&object)) {
    return ExportPlatformObject(Unknown(font->font()));
  }
  if (const auto* picture = dynamic_cast<StandardPicture*>(&object)) {
    return ExportPlatformObject(Unknown(picture->picture()));
  }
  if (const auto* foreign = dynamic_cast<ForeignObject*>(&object)) {
    return ExportPlatformObject(foreign->object());
  }
  return Face::Of(object);
}

Ref<Object> ImportObject(IUnknown* object) {
  const ComPtr<IUnknown> given(object);
  if (!given) return {};
  if (const auto face = given.As<IUnknown>(FaceIid())) {
    return reinterpret_cast<const FaceHead*>(face.get())->object;
  }
  if (auto font = given.As<IFont>()) return Make<StandardFont>(std::move(font));
  if (auto picture = given.As<IPicture>()) return Make<StandardPicture>(std::move(picture));
  if (const auto enumeration = given.As<IEnumVARIANT>())
    return ImportEnumeration(*enumeration.get());
  return Make<ForeignObject>(given);
}

}  // namespace vndoc6::com
