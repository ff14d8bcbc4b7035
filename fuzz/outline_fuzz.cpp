// Whatever an outline says: an error that names a line, or a document that is drawn, printed, and
// the same after a save and a load.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

#include "hosts/vndoc/outline_reader.h"
#include "tests/support/memory_disk.h"
#include "vndoc6/content/compare.h"
#include "vndoc6/document/document.h"
#include "vndoc6/drawing.h"

using vndoc6::vnDocument;
using vndoc6::automation::Make;
using vndoc6::testing::MemoryDisk;

namespace {

bool IsMade(vnDocument& document, std::string_view outline) {
  try {
    vndoc::BuildFromOutline(document, outline);
    return true;
  } catch (const vndoc::Failure& failure) {
    if (std::string(failure.what()).rfind("line ", 0) != 0) throw;
    return false;
  }
}

// Tells what differs.
bool IsSame(vnDocument& left, vnDocument& right) {
  bool same = true;
  for (const vndoc6::Difference& difference :
       vndoc6::Compare(left, right, {.ignore_identity = true})) {
    // It is made by the first save.
    if (difference.object == u"Details" && difference.property == u"Key") continue;
    std::cerr << vndoc6::automation::ToUtf8(vndoc6::DescribeDifference(difference)) << '\n';
    same = false;
  }
  return same;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static MemoryDisk disk;
  disk.Start({});
  const auto document = Make<vnDocument>();
  if (!IsMade(*document, {reinterpret_cast<const char*>(data), size})) return 0;
  if (vndoc6::drawing::Svg(*document).empty()) std::abort();
  if (vndoc6::drawing::Html(*document).empty()) std::abort();
  const vndoc6::Text name = vndoc6::automation::FromUtf8(MemoryDisk::kFolder) + u"file";
  if (!document->SaveAs(name)) std::abort();
  const auto loaded = Make<vnDocument>();
  if (!loaded->Load(name, u"")) std::abort();
  if (!IsSame(*document, *loaded)) std::abort();
  return 0;
}
