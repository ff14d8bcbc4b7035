// What is published of vnStep.
#include "vndoc6/process/step.h"

#include "process/step_content.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {

const automation::ClassInfo& vnStep::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnStep>(
      "vnStep", "One step of the procedure.",
      {0x5C2E4B12, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x12}},
      {0x5C2E4B13, 0x7A6D, 0x4E55, {0xB1, 0x3C, 0x0E, 0x8B, 0x42, 0x9D, 0x61, 0x13}},
      Schema::kRows);
  return info;
}

}  // namespace vndoc6
