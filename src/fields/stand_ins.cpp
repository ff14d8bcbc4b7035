#include "fields/stand_ins.h"

#include "schema/rows.h"

namespace vndoc6 {

using automation::ClassInfo;
using schema::describe;
using schema::property;

const ClassInfo& FieldDefs::classInfo() {
  static const ClassInfo info = describe<FieldDefs>(
      "FieldDefs", "Keeps the text of field definitions.",
      {0x773282fb, 0xb067, 0x416f, {0x8c, 0x9a, 0xf7, 0x77, 0x98, 0x37, 0xb9, 0xb0}},
      {0x5fd55e98, 0xf184, 0x4b7a, {0x8e, 0x49, 0x53, 0xff, 0xc5, 0x09, 0xb5, 0x38}},
      std::tuple{
          property<&FieldDefs::GetText, &FieldDefs::SetText>("Text", "psText"),
          property<&FieldDefs::Database, &FieldDefs::SetDatabase>("Database", "poDatabase")
              .not_content("the host's connection"),
      });
  return info;
}

const ClassInfo& FieldValues::classInfo() {
  static const ClassInfo info = describe<FieldValues>(
      "FieldValues", "Keeps the text of field values.",
      {0x3e516374, 0x5d40, 0x467d, {0xa1, 0x5d, 0xe4, 0x63, 0x58, 0x27, 0xde, 0x52}},
      {0x9535cc20, 0xe6fc, 0x434b, {0x83, 0xac, 0x42, 0x3e, 0x77, 0xae, 0x78, 0x03}},
      std::tuple{
          property<&FieldValues::GetText, &FieldValues::SetText>("Text", "psText"),
      });
  return info;
}

const ClassInfo& FormDef::classInfo() {
  static const ClassInfo info = describe<FormDef>(
      "FormDef", "Keeps the text of a form's definition.",
      {0xbefd48ba, 0xaccf, 0x4efa, {0xbc, 0xd6, 0x07, 0x68, 0x8b, 0xaf, 0x27, 0xa8}},
      {0x634c5d25, 0xfe99, 0x469c, {0xac, 0xaf, 0x01, 0x97, 0x58, 0x3a, 0x7e, 0x0f}},
      std::tuple{
          property<&FormDef::GetText, &FormDef::SetText>("Text", "psText"),
      });
  return info;
}

}  // namespace vndoc6
