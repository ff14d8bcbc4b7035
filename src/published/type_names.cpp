#include "published/type_names.h"

#include "vndoc6/published/library.h"

namespace vndoc6 {

using automation::TypeInfo;
using automation::TypeKind;

namespace {

struct TypeNames {
  TypeKind kind;
  const char* script;
  const char* idl;
};

// In TypeKind's order; those of an enumeration and of a class are its own.
constexpr TypeNames kTypeNames[] = {
    {TypeKind::kVoid, "", "void"},
    {TypeKind::kBoolean, "Boolean", "VARIANT_BOOL"},
    {TypeKind::kShort, "Integer", "short"},
    {TypeKind::kLong, "Long", "long"},
    {TypeKind::kSingle, "Single", "float"},
    {TypeKind::kDouble, "Double", "double"},
    {TypeKind::kCurrency, "Currency", "CURRENCY"},
    {TypeKind::kDate, "Date", "DATE"},
    {TypeKind::kText, "String", "BSTR"},
    {TypeKind::kVariant, "Variant", "VARIANT"},
    {TypeKind::kEnum, nullptr, nullptr},
    {TypeKind::kClass, nullptr, nullptr},
    {TypeKind::kDispatch, "Object", "IDispatch*"},
    {TypeKind::kFont, "StdFont", "IFontDisp*"},
    {TypeKind::kPicture, "StdPicture", "IPictureDisp*"},
    {TypeKind::kEnumerator, "enumerator", "IUnknown*"},
};

constexpr bool IsInOrder() {
  size_t place = 0;
  for (const TypeNames& names : kTypeNames) {
    if (names.kind != static_cast<TypeKind>(place++)) return false;
  }
  return place == static_cast<size_t>(TypeKind::kEnumerator) + 1;
}
static_assert(IsInOrder());

const TypeNames& NamesOf(const TypeInfo& type) {
  return kTypeNames[static_cast<size_t>(type.kind)];
}

}  // namespace

std::string ScriptTypeName(const TypeInfo& type) {
  if (type.kind == TypeKind::kEnum) return type.enumeration().name;
  if (type.kind == TypeKind::kClass) return std::string(type.class_info().name());
  return NamesOf(type).script;
}

std::string InterfaceTypeName(const TypeInfo& type) {
  if (type.kind == TypeKind::kEnum) return type.enumeration().name;
  if (type.kind == TypeKind::kClass) return DefaultInterfaceName(type.class_info()) + "*";
  return NamesOf(type).idl;
}

}  // namespace vndoc6
