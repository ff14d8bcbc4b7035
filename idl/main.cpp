// vndoc6_idl FILE writes the published contract; for a .manifest what a program needs to use the
// DLL without registration, for a .md the reference. vndoc6_idl --check FILE fails when the file
// says anything else, so that nothing published changes by accident.
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>

#include "idl_writer.h"
#include "manifest_writer.h"
#include "reference_writer.h"

namespace {

std::string TextFor(std::string_view path) {
  if (path.ends_with(".md")) return vndoc6::WriteReference();
  return path.ends_with(".manifest") ? vndoc6::WriteManifest() : vndoc6::WriteIdl();
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
  std::ofstream file(path, std::ios::binary);
  file << TextFor(path) << std::flush;
  if (file) return 0;
  std::cerr << "cannot write " << path << "\n";
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  if (count == 3 && std::string_view(arguments[1]) == "--check") return Check(arguments[2]);
  if (count == 2) return Write(arguments[1]);
  std::cerr << "usage: vndoc6_idl [--check] FILE\n";
  return 2;
}
