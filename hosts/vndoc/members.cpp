// vndoc members: the published classes, enumerations and members, from the same tables as the
// library's interface definition.
#include <memory>
#include <ostream>
#include <set>
#include <string>

#include "command.h"
#include "help_texts.h"
#include "objects.h"
#include "published/type_names.h"
#include "vndoc6/automation/font.h"
#include "vndoc6/published/published.h"

namespace vndoc {

using vndoc6::automation::CallKind;
using vndoc6::automation::EnumInfo;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::ParameterInfo;

namespace {

const char* KindName(CallKind kind) {
  switch (kind) {
    case CallKind::kCall:
      return "call";
    case CallKind::kGet:
      return "get ";
    case CallKind::kPut:
    case CallKind::kPutRef:
      return "set ";
  }
  return "?";
}

std::string ParameterList(const MemberInfo& member) {
  std::string list;
  for (const ParameterInfo& parameter : member.parameters) {
    list += list.empty() ? "" : ", ";
    list += std::string(parameter.optional ? "[" : "") + parameter.name + " As " +
            vndoc6::ScriptTypeName(parameter.type) + (parameter.optional ? "]" : "");
  }
  return list.empty() ? "" : '(' + list + ')';
}

// The rows of a property share their help: it stands below the first one.
void WriteClass(const ClassInfo& info, std::ostream& out) {
  out << info.name() << ": " << info.help() << '\n';
  std::set<int32_t> shown;
  for (const MemberInfo& member : info.members()) {
    if (member.hidden || member.id == vndoc6::automation::kNewEnumMember) continue;
    out << "  " << KindName(member.kind) << ' ' << member.name << ParameterList(member);
    const std::string result = vndoc6::ScriptTypeName(member.result);
    if (!result.empty()) out << " As " << result;
    out << '\n';
    if (!shown.insert(member.id).second) continue;
    out << "         " << HelpOf(std::string(info.name()) + "." + member.name) << '\n';
  }
}

void WriteEnum(const EnumInfo& info, std::ostream& out) {
  out << info.name << ": " << info.help << '\n';
  for (const auto& value : info.values) out << "  " << value.name << " = " << value.value << '\n';
}

void WriteNames(std::ostream& out) {
  out << "Classes\n";
  for (const auto& published : vndoc6::PublishedClasses()) {
    out << "  " << published.info().name() << ": " << published.info().help() << '\n';
  }
  out << "Enumerations\n";
  for (const EnumInfo* const info : vndoc6::PublishedEnums()) {
    out << "  " << info->name << ": " << info->help << '\n';
  }
}

bool WriteNamed(const Text& name, std::ostream& out) {
  using vndoc6::automation::EqualsAsciiFolded;
  const auto write_class = [&](const ClassInfo& info) {
    const bool found = EqualsAsciiFolded(info.name(), name);
    if (found) WriteClass(info, out);
    return found;
  };
  for (const auto& published : vndoc6::PublishedClasses()) {
    if (write_class(published.info())) return true;
  }
  for (const EnumInfo* const info : vndoc6::PublishedEnums()) {
    if (!EqualsAsciiFolded(info->name, name)) continue;
    WriteEnum(*info, out);
    return true;
  }
  return write_class(vndoc6::automation::Font::classInfo());
}

}  // namespace

void AddMembers(CLI::App& app, Context& context) {
  auto* const command = app.add_subcommand(
      "members", "Lists the classes and enumerations, or the members of one of them");
  const auto name = std::make_shared<std::string>();
  command->add_option("CLASS", *name, "A class or an enumeration, such as vnStep");
  command->callback([name, &context] {
    if (name->empty()) return WriteNames(context.out);
    if (!WriteNamed(FromUtf8(*name), context.out)) {
      throw Failure("there is no class or enumeration " + *name);
    }
  });
}

}  // namespace vndoc
