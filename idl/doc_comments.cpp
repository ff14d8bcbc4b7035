#include "doc_comments.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <stdexcept>

namespace vndoc6 {
namespace {

std::string Trimmed(const std::string& line) {
  const size_t start = line.find_first_not_of(' ');
  return start == std::string::npos ? "" : line.substr(start);
}

// The classes that a class derives from, bare of namespaces. Of a template's arguments, the second
// is a base as well, as for "Collection<vnTask, StepMember>"; so is its default.
std::vector<std::string> BasesIn(const std::string& declaration) {
  static const std::regex kBase(
      "public (?:\\w+::)*(\\w+)(?:<\\w+, (?:\\w+::)*(\\w+)>)?|class Base = (\\w+)");
  std::vector<std::string> bases;
  for (std::sregex_iterator base(declaration.begin(), declaration.end(), kBase), end; base != end;
       ++base) {
    std::copy_if(base->begin() + 1, base->end(), std::back_inserter(bases),
                 [](const auto& name) { return name.matched; });
  }
  return bases;
}

// The word before the first parenthesis: a function's name.
std::string FunctionIn(const std::string& declaration) {
  static const std::regex kFunction("(\\w+)\\(");
  std::smatch found;
  return std::regex_search(declaration, found, kFunction) ? found[1].str() : "";
}

}  // namespace

DocComments DocComments::ReadFolders(std::initializer_list<std::filesystem::path> folders) {
  DocComments comments;
  for (const auto& folder : folders) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
      if (entry.path().extension() != ".h") continue;
      std::ifstream file(entry.path(), std::ios::binary);
      comments.ReadHeader(std::string{std::istreambuf_iterator<char>(file), {}});
    }
  }
  return comments;
}

// Line by line: a comment belongs to the declaration that begins on the next line, a declaration
// ends with a brace or a semicolon, and what lies deeper than a class's own braces is no member.
void DocComments::ReadHeader(std::string_view text) {
  static const std::regex kClass("(?:template <.*> )?class (\\w+)(?: final)?(?: : .*)? \\{");
  std::string comment, declaration, line;
  Class* open = nullptr;
  std::ptrdiff_t depth = 0, member_depth = 0;
  std::istringstream lines{std::string(text)};
  while (std::getline(lines, line)) {
    line = Trimmed(line);
    if (line.starts_with("//") && declaration.empty()) {
      const std::string words = Trimmed(line.substr(2));
      comment += (comment.empty() || words.empty() ? "" : " ") + words;
      continue;
    }
    if (line.empty() || line.starts_with("#")) {
      comment.clear();
      continue;
    }
    declaration += (declaration.empty() ? "" : " ") + line;
    if (std::string_view(";{}:").find(line.back()) == std::string_view::npos) continue;
    std::smatch found;
    if (std::regex_match(declaration, found, kClass)) {
      open = &classes_[found[1]];
      *open = {comment, BasesIn(declaration), {}};
      member_depth = depth + 1;
    } else if (open != nullptr && depth == member_depth && !comment.empty()) {
      open->functions.try_emplace(FunctionIn(declaration), comment);
    }
    depth += std::count(declaration.begin(), declaration.end(), '{') -
             std::count(declaration.begin(), declaration.end(), '}');
    if (depth < member_depth) open = nullptr;
    comment.clear();
    declaration.clear();
  }
}

std::string DocComments::OfClass(std::string_view class_name) const {
  const auto found = classes_.find(class_name);
  return found != classes_.end() ? found->second.comment : "";
}

std::string DocComments::OfMember(std::string_view class_name, std::string_view member) const {
  const std::string name(member);
  const std::string* comment = Find(class_name, {name, "Get" + name, "Value" + name});
  if (comment == nullptr) comment = Find(class_name, {"Set" + name});
  if (comment != nullptr) return *comment;
  throw std::runtime_error("no comment stands above the declaration of " + std::string(class_name) +
                           "::" + name);
}

std::string DocComments::OfPut(std::string_view class_name, std::string_view member) const {
  const std::string* comment = Find(class_name, {"Set" + std::string(member)});
  return comment != nullptr ? *comment : OfMember(class_name, member);
}

std::string DocComments::OfRow(const automation::ClassInfo& info,
                               const automation::MemberInfo& row) const {
  using automation::CallKind;
  const bool put = Allows(CallKind::kPut | CallKind::kPutRef, row.kind);
  return put ? OfPut(info.name(), row.name) : OfMember(info.name(), row.name);
}

std::string DocComments::OfEvent(std::string_view event_interface, std::string_view event) const {
  constexpr std::string_view kPrefix = "__vn";
  return OfMember(std::string(event_interface.substr(kPrefix.size())) + "Listener", event);
}

const std::string* DocComments::Find(std::string_view class_name,
                                     std::initializer_list<std::string> functions) const {
  const auto found = classes_.find(class_name);
  if (found == classes_.end()) return nullptr;
  const Class& here = found->second;
  for (const std::string& function : functions) {
    const auto own = here.functions.find(function);
    if (own != here.functions.end()) return &own->second;
  }
  for (const std::string& base : here.bases) {
    if (const std::string* inherited = Find(base, functions)) return inherited;
  }
  return nullptr;
}

// A full stop ends a sentence when a capital or a digit begins the next one.
std::string FirstSentence(std::string_view comment) {
  for (size_t stop = comment.find(". "); stop != std::string_view::npos;
       stop = comment.find(". ", stop + 1)) {
    const auto next = static_cast<unsigned char>(comment[stop + 2]);
    if (std::isupper(next) || std::isdigit(next)) return std::string(comment.substr(0, stop + 1));
  }
  return std::string(comment);
}

}  // namespace vndoc6
