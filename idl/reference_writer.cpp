#include "reference_writer.h"

#include "published/type_names.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/published/published.h"

namespace vndoc6 {
namespace {

using namespace automation;

constexpr const char* kHead =
    "# Reference\n\n"
    "Every class, member, event and enumeration that hosts can see, in the order of the type "
    "library.\n"
    "Written by the program vndoc6_idl from the classes' member tables and the comments in their\n"
    "headers; don't edit it. What is worth knowing beyond that is in "
    "[behaviour.md](behaviour.md).\n"
    "\n"
    "A class is created as `VNDoc6.` and its name. A member in parentheses is hidden from "
    "browsers;\n"
    "the default member has the identifier 0. True and False are what scripts call them: -1 and 0 "
    "as\n"
    "numbers. Nothing is the absent object.\n"
    "\n"
    "Objects of one document belong to one thread at a time; different documents may be used on\n"
    "different threads at once. A document may be handed on to another thread. Two documents that "
    "have\n"
    "an object in common, such as a picture that was put into both, a step that was added to both, "
    "or\n"
    "the document that a jump of the other has opened, count as one document here; an object "
    "without a\n"
    "document counts as a document of its own.\n";

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

// The ways in which a property can be used that read alike: "get, put". Nothing for a row whose
// text stood there before.
std::string KindsText(const ClassInfo& info, const DocComments& comments, size_t row) {
  const std::span<const MemberInfo> members = info.members();
  const auto reads_alike = [&](const MemberInfo& other) {
    return other.id == members[row].id && MemberText(other) == MemberText(members[row]) &&
           comments.OfRow(info, other) == comments.OfRow(info, members[row]);
  };
  std::string kinds;
  for (size_t i = 0; i < members.size(); ++i) {
    if (!reads_alike(members[i])) continue;
    if (i < row) return "";
    kinds += (kinds.empty() ? "" : ", ") + std::string(KindText(members[i].kind));
  }
  return kinds;
}

std::string ClassText(const ClassInfo& info, const DocComments& comments) {
  const std::string comment = comments.OfClass(info.name());
  std::string text = "\n## " + std::string(info.name()) + "\n\n" + info.help() + "\n";
  if (!comment.empty()) text += "\n" + comment + "\n";
  text += "\n| Member | Kind | Id | |\n|---|---|---|---|\n";
  for (size_t row = 0; row < info.members().size(); ++row) {
    const MemberInfo& member = info.members()[row];
    const std::string kinds = KindsText(info, comments, row);
    if (kinds.empty()) continue;
    text += "| " + MemberText(member) + " | " + kinds + " | " + std::to_string(member.id) + " | " +
            comments.OfRow(info, member) + " |\n";
  }
  return text;
}

std::string EventsText(const EventInterfaceInfo& events, const DocComments& comments) {
  std::string text =
      "\n### Events: " + std::string(events.name) + "\n\n| Event | Id | |\n|---|---|---|\n";
  for (const EventInfo& event : events.events) {
    text += "| `" + std::string(event.name);
    const char* separator = "(";
    for (const EventParameter& parameter : event.parameters) {
      text += std::string(separator) + (parameter.by_reference ? "" : "ByVal ") + parameter.name +
              " As " + ScriptTypeName(parameter.type);
      separator = ", ";
    }
    text += std::string(event.parameters.empty() ? "`" : ")`") + " | " + std::to_string(event.id) +
            " | " + comments.OfEvent(events.name, event.name) + " |\n";
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

std::string WriteReference(const DocComments& comments) {
  std::string text = kHead;
  for (const PublishedClass& published : PublishedClasses()) {
    text += ClassText(published.info(), comments);
    if (published.events != nullptr) text += EventsText(published.events(), comments);
  }
  for (const EnumInfo* info : PublishedEnums()) text += EnumText(*info);
  return text;
}

}  // namespace vndoc6
