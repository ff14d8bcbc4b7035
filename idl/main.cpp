// vndoc6_idl FILE writes the published contract; for a .manifest what a program needs to use the
// DLL without registration, for a .md the reference, for a .cpp the help strings of `vndoc`.
// vndoc6_idl --check FILE fails when the file says anything else, so that nothing published changes
// by accident. Any of them fails when a published member has no documentation comment.
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>

#include "doc_comments.h"
#include "help_writer.h"
#include "idl_writer.h"
#include "manifest_writer.h"
#include "reference_writer.h"

namespace {

std::string TextFor(std::string_view path) {
  if (path.ends_with(".manifest")) return vndoc6::WriteManifest();
  // The stand-ins are published, though hosts make them by the late-bound names only.
  const auto comments = vndoc6::DocComments::ReadFolders(
      {VNDOC6_SOURCE_DIR "/include/vndoc6", VNDOC6_SOURCE_DIR "/src/fields"});
  if (path.ends_with(".md")) return vndoc6::WriteReference(comments);
  return path.ends_with(".cpp") ? vndoc6::WriteHelp(comments) : vndoc6::WriteIdl(comments);
}

int Check(const char* path) {
  std::ifstream file(path, std::ios::binary);
  const std::string committed{std::istreambuf_iterator<char>(file), {}};
  if (committed == TextFor(path)) return 0;
  std::cerr << path
            << " differs from the member tables. If a change of the published interface is\n"
            << "intended, write it anew with: vndoc6_idl " << path << "\n";
  return 1;
}

int Write(const char* path) {
  const std::string text = TextFor(path);
  std::ofstream file(path, std::ios::binary);
  file << text << std::flush;
  if (file) return 0;
  std::cerr << "cannot write " << path << "\n";
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    if (count == 3 && std::string_view(arguments[1]) == "--check") return Check(arguments[2]);
    if (count == 2) return Write(arguments[1]);
  } catch (const std::exception& error) {
    std::cerr << "vndoc6_idl: " << error.what() << "\n";
    return 1;
  }
  std::cerr << "usage: vndoc6_idl [--check] FILE\n";
  return 2;
}
