#include "schema/rows.h"

namespace vndoc6::schema::detail {

void NumberMembers(std::vector<MemberInfo>& members) {
  int32_t next = 1;
  for (size_t i = 0; i < members.size(); ++i) {
    MemberInfo& member = members[i];
    const std::string_view name = member.name;
    if (name == "Item") {
      member.id = automation::kDefaultMember;
    } else if (name == "NewEnum") {
      member.id = automation::kNewEnumMember;
      member.hidden = true;
    } else {
      for (size_t j = 0; j < i && member.id == 0; ++j) {
        if (members[j].name == name) member.id = members[j].id;
      }
      if (member.id == 0) member.id = next++;
    }
  }
}

}  // namespace vndoc6::schema::detail
