// Where the reports of several documents lie, and which of them a jump leads to.
#pragma once

#include <filesystem>
#include <vector>

#include "vndoc6/automation/text.h"

namespace vndoc {

// The name that a document gives for a file, as a path of this system: seen from the folder of the
// document.
std::filesystem::path NamedFrom(const std::filesystem::path& document, const vndoc6::Text& name);

// `to` as a page in the folder `from` sees it, with slashes; empty for that folder itself.
vndoc6::Text SeenFrom(const std::filesystem::path& from, const std::filesystem::path& to);

// Reports in one folder, named after their documents.
class ReportFolder {
 public:
  // The name of the document's report: its own with another ending, made different from all others.
  vndoc6::Text Add(const std::filesystem::path& document);
  // The report of the document that a jump in another names: the one at that place, or else the
  // only one of that name, for jumps often tell where files lie on another machine. Empty when
  // there is none.
  vndoc6::Text ReportOf(const std::filesystem::path& document, const vndoc6::Text& name) const;

 private:
  struct Entry {
    std::filesystem::path document;
    vndoc6::Text report;
  };
  std::vector<Entry> entries_;
};

}  // namespace vndoc
