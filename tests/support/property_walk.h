// Tries every plain property of an object, late-bound, as a host does.
#pragma once

#include <string>
#include <vector>

#include "tests/support/recording_listener.h"
#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/core/detail_id.h"

namespace vndoc6::testing {

// The property's value before it, made different.
inline automation::Variant Changed(const automation::Variant& value) {
  if (const bool* flag = value.If<bool>()) return !*flag;
  if (const Text* text = value.If<Text>()) return *text + u"x:\"";
  return value.ToDouble() + 7;
}

// The number of "vnd<name>"; 0 when there is none.
inline int32_t NumberNamed(const std::string& name) {
  for (const auto& value : automation::DescribeEnum<EnumVantrelDetailID>().values) {
    if ("vnd" + name == value.name) return value.value;
  }
  return 0;
}

// Changes every property that has a put with one parameter. Gives those that do not read back what
// was put ("Left reads 15"), and those that do not report "vnd<name>" once ("ZOrderIndex 3").
inline std::vector<std::string> ChangeEveryProperty(automation::Object& object,
                                                    RecordingListener& events) {
  std::vector<std::string> unusual;
  for (const automation::MemberInfo& member : object.GetClassInfo()->members()) {
    if (member.kind != automation::CallKind::kPut || member.parameters.size() != 1) continue;
    const std::string name = member.name;
    const Text name_text = automation::FromUtf8(name);
    const automation::Variant value = Changed(automation::Get(object, name_text));
    automation::Put(object, name_text, {value});
    std::string reported;
    for (const std::string& event : events.Take()) reported += event.substr(event.rfind(' '));
    const Text read = automation::Get(object, name_text).ToText();
    if (read != value.ToText()) unusual.push_back(name + " reads " + automation::ToUtf8(read));
    if (reported != " " + std::to_string(NumberNamed(name))) unusual.push_back(name + reported);
  }
  return unusual;
}

}  // namespace vndoc6::testing
