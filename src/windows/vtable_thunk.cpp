#include "windows/vtable_thunk.h"

#include "windows/entry.h"
#include "windows/objects.h"
#include "windows/variants.h"

namespace vndoc6::windows::abi {

static_assert(std::is_same_v<Code, HRESULT>);
static_assert(kInvalidPointer == E_POINTER);
static_assert(sizeof(Money) == sizeof(CY) && alignof(Money) == alignof(CY));
static_assert(sizeof(AnyValue) == sizeof(VARIANT) && alignof(AnyValue) == alignof(VARIANT));
static_assert(sizeof(String) == sizeof(BSTR) && sizeof(char16_t) == sizeof(OLECHAR));

Text ReadString(String string) { return Text(BstrText(reinterpret_cast<BSTR>(string))); }

String WriteString(TextView text) { return reinterpret_cast<String>(MakeBstr(text)); }

Variant ReadAny(const AnyValue& value) {
  return ReadVariant(reinterpret_cast<const VARIANT&>(value));
}

void WriteAny(const Variant& value, AnyValue& out) {
  WriteVariant(value, reinterpret_cast<VARIANT&>(out));
}

Ref<Object> ReadObject(void* object) { return ImportObject(static_cast<IUnknown*>(object)); }

void* WriteObject(const Ref<Object>& object) {
  if (!object) return nullptr;
  if (IsEnumerator(*object)) return ExportEnumerator(*object).Detach();
  return ExportObject(*object).Detach();
}

Code ReportFault(const DualHead& self) noexcept {
  return SetErrorObject(CaughtFault(), ToIid(self.object->GetClassInfo()->interface_id()));
}

}  // namespace vndoc6::windows::abi
