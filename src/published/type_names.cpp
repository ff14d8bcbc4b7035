#include "published/type_names.h"

#include "vndoc6/automation/error.h"

namespace vndoc6 {

using automation::TypeKind;

std::string ScriptTypeName(const automation::TypeInfo& type) {
  switch (type.kind) {
    case TypeKind::kVoid:
      return "";
    case TypeKind::kBoolean:
      return "Boolean";
    case TypeKind::kShort:
      return "Integer";
    case TypeKind::kLong:
      return "Long";
    case TypeKind::kSingle:
      return "Single";
    case TypeKind::kDouble:
      return "Double";
    case TypeKind::kCurrency:
      return "Currency";
    case TypeKind::kDate:
      return "Date";
    case TypeKind::kText:
      return "String";
    case TypeKind::kVariant:
      return "Variant";
    case TypeKind::kEnum:
      return type.enumeration().name;
    case TypeKind::kClass:
      return std::string(type.class_info().name());
    case TypeKind::kDispatch:
      return "Object";
    case TypeKind::kFont:
      return "StdFont";
    case TypeKind::kPicture:
      return "StdPicture";
    case TypeKind::kEnumerator:
      return "enumerator";
  }
  throw automation::Error(automation::kInvalidCall);
}

}  // namespace vndoc6
