// What an object says besides what an account of a process has words for: codes, numbers and free
// values of the host's. Told under their published names, so that nothing is left out.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"

namespace vndoc6::drawing {

struct OtherValue {
  std::string name;  // "TaskType", of a bag's entry "Properties/Colour"
  Text value;
};

class OtherValues {
 public:
  // In published order: what differs from a new object's, without keys, identities and parts.
  std::vector<OtherValue> Of(automation::Object& object);

 private:
  struct Row {
    const automation::MemberInfo* member;
    Text usual;
  };
  const std::vector<Row>& RowsOf(const automation::ClassInfo& info);

  std::unordered_map<const automation::ClassInfo*, std::vector<Row>> known_;
};

}  // namespace vndoc6::drawing
