#include "com/variants.h"

#include <limits>

#include "com/objects.h"
#include "vndoc6/automation/error.h"

namespace vndoc6::com {
namespace {

using namespace automation;

template <class Integer>
Variant WideInteger(Integer value) {
  if (std::in_range<int32_t>(value)) return Variant(static_cast<int32_t>(value));
  return Variant(static_cast<double>(value));
}

Variant FromDecimal(DECIMAL value) {
  double number = 0;
  if (FAILED(VarR8FromDec(&value, &number))) throw Error(kOverflow);
  return Variant(number);
}

// What a plain or a by-reference VARIANT of `type` holds at `data`.
Variant ReadAt(VARTYPE type, const void* data) {
  switch (type) {
    case VT_EMPTY:
      return {};
    case VT_NULL:
      return Null{};
    case VT_BOOL:
      return *static_cast<const VARIANT_BOOL*>(data) != VARIANT_FALSE;
    case VT_I1:
      return static_cast<int16_t>(*static_cast<const signed char*>(data));
    case VT_UI1:
      return static_cast<int16_t>(*static_cast<const BYTE*>(data));
    case VT_I2:
      return *static_cast<const int16_t*>(data);
    case VT_UI2:
      return static_cast<int32_t>(*static_cast<const USHORT*>(data));
    case VT_I4:
    case VT_INT:
      return static_cast<int32_t>(*static_cast<const LONG*>(data));
    case VT_UI4:
    case VT_UINT:
      return WideInteger(*static_cast<const ULONG*>(data));
    case VT_I8:
      return WideInteger(*static_cast<const LONGLONG*>(data));
    case VT_UI8:
      return WideInteger(*static_cast<const ULONGLONG*>(data));
    case VT_R4:
      return *static_cast<const float*>(data);
    case VT_R8:
      return *static_cast<const double*>(data);
    case VT_CY:
      return Currency{static_cast<const CY*>(data)->int64};
    case VT_DATE:
      return Date{*static_cast<const DATE*>(data)};
    case VT_BSTR:
      return BstrText(*static_cast<const BSTR*>(data));
    case VT_ERROR:
      return ErrorValue{static_cast<int32_t>(*static_cast<const SCODE*>(data))};
    case VT_DISPATCH:
      return ImportObject(*static_cast<IDispatch* const*>(data));
    case VT_UNKNOWN:
      return ImportObject(*static_cast<IUnknown* const*>(data));
    case VT_DECIMAL:
      return FromDecimal(*static_cast<const DECIMAL*>(data));
    default:
      return Opaque{};
  }
}

void WriteObject(const Ref<Object>& object, VARIANT& out) {
  if (object && IsEnumerator(*object)) {
    out.punkVal = ExportEnumerator(*object).Detach();
    out.vt = VT_UNKNOWN;
    return;
  }
  out.pdispVal = object ? ExportObject(*object).Detach() : nullptr;
  out.vt = VT_DISPATCH;
}

}  // namespace

VARTYPE PlainType(TypeKind kind) {
  switch (kind) {
    case TypeKind::kBoolean:
      return VT_BOOL;
    case TypeKind::kShort:
      return VT_I2;
    case TypeKind::kLong:
    case TypeKind::kEnum:
      return VT_I4;
    case TypeKind::kSingle:
      return VT_R4;
    case TypeKind::kDouble:
      return VT_R8;
    case TypeKind::kCurrency:
      return VT_CY;
    case TypeKind::kDate:
      return VT_DATE;
    case TypeKind::kText:
      return VT_BSTR;
    default:
      return VT_EMPTY;
  }
}

Variant ReadVariant(const VARIANT& value) {
  if (value.vt == (VT_BYREF | VT_VARIANT)) {
    // One level: a reference to a reference to a VARIANT does not exist.
    if (value.pvarVal->vt == (VT_BYREF | VT_VARIANT)) throw Error(kTypeMismatch);
    return ReadVariant(*value.pvarVal);
  }
  if ((value.vt & VT_BYREF) != 0) return ReadAt(value.vt & ~VT_BYREF, value.byref);
  // A decimal fills the whole VARIANT, every other value starts at the same place.
  if (value.vt == VT_DECIMAL) return FromDecimal(value.decVal);
  return ReadAt(value.vt, &value.byref);
}

void WriteVariant(const Variant& value, VARIANT& out) {
  out.vt = VT_EMPTY;
  switch (value.kind()) {
    case ValueKind::kEmpty:
      return;
    case ValueKind::kNull:
      out.vt = VT_NULL;
      return;
    case ValueKind::kBoolean:
      out.boolVal = *value.If<bool>() ? VARIANT_TRUE : VARIANT_FALSE;
      out.vt = VT_BOOL;
      return;
    case ValueKind::kShort:
      out.iVal = *value.If<int16_t>();
      out.vt = VT_I2;
      return;
    case ValueKind::kLong:
      out.lVal = *value.If<int32_t>();
      out.vt = VT_I4;
      return;
    case ValueKind::kSingle:
      out.fltVal = *value.If<float>();
      out.vt = VT_R4;
      return;
    case ValueKind::kDouble:
      out.dblVal = *value.If<double>();
      out.vt = VT_R8;
      return;
    case ValueKind::kCurrency:
      out.cyVal.int64 = value.If<Currency>()->scaled;
      out.vt = VT_CY;
      return;
    case ValueKind::kDate:
      out.date = value.If<Date>()->days;
      out.vt = VT_DATE;
      return;
    case ValueKind::kText:
      out.bstrVal = MakeBstr(*value.If<Text>());
      out.vt = VT_BSTR;
      return;
    case ValueKind::kObject:
      return WriteObject(value.ToObject(), out);
    case ValueKind::kError:
      out.scode = value.If<ErrorValue>()->scode;
      out.vt = VT_ERROR;
      return;
    case ValueKind::kOpaque:
      throw Error(kTypeMismatch);
  }
}

VARIANT ReferenceTo(VARIANT& value) {
  VARIANT reference;
  VariantInit(&reference);
  reference.vt = static_cast<VARTYPE>(VT_BYREF | value.vt);
  reference.byref = &value.byref;
  return reference;
}

}  // namespace vndoc6::com
