// Whatever lies in a template library's file: it is refused, or reads whole, and saves and loads
// keep it.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "tests/support/memory_disk.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/content/compare.h"
#include "vndoc6/templates/template_library.h"

using vndoc6::Text;
using vndoc6::vnTemplateLibrary;
using vndoc6::automation::Make;
using vndoc6::automation::Ref;
using vndoc6::testing::MemoryDisk;

namespace {

// Null when the text is damaged.
Ref<vnTemplateLibrary> Load(const Text& name) {
  const auto library = Make<vnTemplateLibrary>();
  try {
    if (!library->Load(name)) std::abort();
    return library;
  } catch (const vndoc6::automation::Error& error) {
    if (error.number() != vndoc6::automation::kPathFileAccess) throw;
    return nullptr;
  }
}

// Tells what differs.
void ExpectSame(vnTemplateLibrary& left, vnTemplateLibrary& right) {
  const auto differences = vndoc6::Compare(left, right);
  for (const vndoc6::Difference& difference : differences) {
    std::cerr << vndoc6::automation::ToUtf8(vndoc6::DescribeDifference(difference)) << '\n';
  }
  if (!differences.empty()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static MemoryDisk disk;
  const std::string file = std::string(MemoryDisk::kFolder) + "file";
  disk.Start({{file, {reinterpret_cast<const char*>(data), size}}});
  const Text name = vndoc6::automation::FromUtf8(file);
  const Ref<vnTemplateLibrary> library = Load(name);
  if (!library) return 0;
  ExpectSame(*library, *library);
  library->Save();
  const std::string saved = disk.Now().at(file);
  const Ref<vnTemplateLibrary> again = Load(name);
  if (!again) std::abort();
  // Every load gives a template with the number 0 the next number.
  if (library->GetTemplateByKey(u"0")) return 0;
  ExpectSame(*library, *again);
  again->Save();
  if (disk.Now().at(file) != saved) std::abort();
  return 0;
}
