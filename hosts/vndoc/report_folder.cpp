#include "report_folder.h"

#include <algorithm>

namespace vndoc {
namespace {

namespace fs = std::filesystem;
using vndoc6::Text;

// Names are compared as file systems do that don't tell cases apart, in the letters that all have.
Text Folded(Text name) {
  std::transform(name.begin(), name.end(), name.begin(), [](char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
  });
  return name;
}

fs::path Normal(const fs::path& path) { return fs::absolute(path).lexically_normal(); }

}  // namespace

fs::path NamedFrom(const fs::path& document, const Text& name) {
  Text generic = name;
  std::replace(generic.begin(), generic.end(), u'\\', u'/');
  return Normal(Normal(document).parent_path() / generic);
}

Text SeenFrom(const fs::path& from, const fs::path& to) {
  const fs::path whole = Normal(to);
  const fs::path seen = whole.lexically_relative(Normal(from));
  if (seen == ".") return {};
  return (seen.empty() ? whole : seen).generic_u16string();
}

Text ReportFolder::Add(const fs::path& document) {
  const Text stem = document.stem().u16string();
  const auto is_taken = [this](const Text& report) {
    return Folded(report) == u"index.html" ||
           std::any_of(entries_.begin(), entries_.end(),
                       [&](const Entry& entry) { return Folded(entry.report) == Folded(report); });
  };
  Text report = stem + u".html";
  for (int32_t number = 2; is_taken(report); ++number) {
    report = stem + u"-" + vndoc6::automation::FromUtf8(std::to_string(number)) + u".html";
  }
  entries_.push_back({Normal(document), report});
  return report;
}

Text ReportFolder::ReportOf(const fs::path& document, const Text& name) const {
  if (name.empty()) return {};
  const fs::path wanted = NamedFrom(document, name);
  for (const Entry& entry : entries_) {
    if (entry.document == wanted) return entry.report;
  }
  const Text file = Folded(wanted.filename().u16string());
  const Entry* only = nullptr;
  for (const Entry& entry : entries_) {
    if (Folded(entry.document.filename().u16string()) != file) continue;
    if (only != nullptr) return {};
    only = &entry;
  }
  return only == nullptr ? Text() : only->report;
}

}  // namespace vndoc
