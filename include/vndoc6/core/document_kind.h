// What kind of document a document says it is. The values are in every file: never change one.
#pragma once

#include <cstdint>

#include "vndoc6/automation/class_info.h"

namespace vndoc6 {

enum EnumVantrelDocumentType : int32_t { vndtKestrane = 0, vndtMorvella = 1, vndtDunmarrow = 2 };
// Another reading of the same field.
enum EnumVantrelDocType : int32_t {
  vndtStandard = 0,
  vndtTemplate = 1,
  vndtMap = 2,
  vndtWorkflow = 3
};
enum EnumVantrelEdition : int32_t { vneKestrane = 0, vneMorvella = 1 };

template <>
const automation::EnumInfo& automation::DescribeEnum<EnumVantrelDocumentType>();
template <>
const automation::EnumInfo& automation::DescribeEnum<EnumVantrelDocType>();
template <>
const automation::EnumInfo& automation::DescribeEnum<EnumVantrelEdition>();

}  // namespace vndoc6
