#include "reference_writer.h"

#include "automation/error.h"
#include "published/published.h"
#include "published/type_names.h"

namespace vndoc6 {
namespace {

using namespace automation;

constexpr const char* kHead =
    "# Reference\n\n"
    "Every class, member, event and enumeration that hosts can see, in the order of the type "
    "library.\n"
    "Written by the program vndoc6_idl from the member tables of the classes; don't edit it. What "
    "the\n"
    "members do, in each outcome, stand in the headers; what is worth knowing beyond that in\n"
    "[behaviour.md](behaviour.md).\n\n"
    "A class is created as `VNDoc6.` and its name. A member in parentheses is hidden from "
    "browsers; the\n"
    "default member has the identifier 0.\n";

std::string ParameterText(const ParameterInfo& parameter) {
  const std::string text = std::string(parameter.name) + " As " + ScriptTypeName(parameter.type);
  if (!parameter.optional) return text;
  const Variant& value = parameter.default_value;
  const std::string shown = ToUtf8(value.ToText());
  return "[" + text + " = " + (value.IsText() ? "\"" + shown + "\"" : shown) + "]";
}

// A put's last parameter is the value: it shows as the type of the property.
std::string MemberText(const MemberInfo& member) {
  const bool put = member.kind == CallKind::kPut || member.kind == CallKind::kPutRef;
  const size_t shown = member.parameters.size() - (put ? 1 : 0);
  std::string text = member.name;
  const char* separator = "(";
  for (size_t i = 0; i < shown; ++i) {
    text += separator + ParameterText(member.parameters[i]);
    separator = ", ";
  }
  if (shown > 0) text += ")";
  const TypeInfo& type = put ? member.parameters.back().type : member.result;
  if (type.kind != TypeKind::kVoid) text += " As " + ScriptTypeName(type);
  return member.hidden ? "(`" + text + "`)" : "`" + text + "`";
}

const char* KindText(CallKind kind) {
  switch (kind) {
    case CallKind::kGet:
      return "get";
    case CallKind::kPut:
      return "put";
    case CallKind::kPutRef:
      return "set";
    case CallKind::kCall:
      return "method";
  }
  throw Error(kInvalidCall);
}

std::string ClassText(const ClassInfo& info) {
  std::string text = "\n## " + std::string(info.name()) + "\n\n" + info.help() +
                     "\n\n| Member | Kind | Id | |\n|---|---|---|---|\n";
  for (const MemberInfo& member : info.members()) {
    text += "| " + MemberText(member) + " | " + KindText(member.kind) + " | " +
            std::to_string(member.id) + " | " + member.help + " |\n";
  }
  return text;
}

std::string EventsText(const EventInterfaceInfo& events) {
  std::string text =
      "\n### Events: " + std::string(events.name) + "\n\n| Event | Id |\n|---|---|\n";
  for (const EventInfo& event : events.events) {
    text += "| `" + std::string(event.name);
    const char* separator = "(";
    for (const EventParameter& parameter : event.parameters) {
      text += std::string(separator) + (parameter.by_reference ? "" : "ByVal ") + parameter.name +
              " As " + ScriptTypeName(parameter.type);
      separator = ", ";
    }
    text += std::string(event.parameters.empty() ? "`" : ")`") + " | " + std::to_string(event.id) +
            " |\n";
  }
  return text;
}

std::string EnumText(const EnumInfo& info) {
  std::string text =
      "\n## " + std::string(info.name) + "\n\n" + info.help + "\n\n| Name | Value |\n|---|---|\n";
  for (const EnumValue& value : info.values) {
    text += "| `" + std::string(value.name) + "` | " + std::to_string(value.value) + " |\n";
  }
  return text;
}

}  // namespace

std::string WriteReference() {
  std::string text = kHead;
  for (const PublishedClass& published : PublishedClasses()) {
    text += ClassText(published.info());
    if (published.events != nullptr) text += EventsText(published.events());
  }
  for (const EnumInfo* info : PublishedEnums()) text += EnumText(*info);
  return text;
}

}  // namespace vndoc6
