#include "help_writer.h"

#include "idl_writer.h"
#include "vndoc6/automation/font.h"
#include "vndoc6/published/published.h"

namespace vndoc6 {
namespace {

std::string Rows(const automation::ClassInfo& info, const DocComments& comments) {
  std::string rows;
  for (const automation::MemberInfo& member : info.members()) {
    const std::string name = std::string(info.name()) + "." + member.name;
    const std::string help = FirstSentence(comments.OfMember(info.name(), member.name));
    rows += "      {" + Quoted(name) + ", " + Quoted(help) + "},\n";
  }
  return rows;
}

}  // namespace

std::string WriteHelp(const DocComments& comments) {
  std::string text =
      "// Written by the program vndoc6_idl from the documentation comments of the classes.\n"
      "#include <map>\n\n"
      "#include \"help_texts.h\"\n\n"
      "namespace vndoc {\n\n"
      "std::string_view HelpOf(std::string_view member) {\n"
      "  static const std::map<std::string_view, std::string_view> texts = {\n";
  for (const PublishedClass& published : PublishedClasses()) {
    text += Rows(published.info(), comments);
  }
  text += Rows(automation::Font::classInfo(), comments);
  return text +
         "  };\n"
         "  const auto found = texts.find(member);\n"
         "  return found != texts.end() ? found->second : std::string_view();\n"
         "}\n\n"
         "}  // namespace vndoc\n";
}

}  // namespace vndoc6
