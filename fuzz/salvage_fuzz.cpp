// Whatever a damaged file holds: what is salvaged of it has no fault that could hide anything, and
// where nothing is told, nothing was done.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "bag/bag_scanner.h"
#include "document/saved_form.h"
#include "vndoc6/content/salvage.h"

using vndoc6::SavedEntry;
using vndoc6::bag::BagEntry;
using vndoc6::bag::BagScanner;
using vndoc6::bag::KeptText;
using vndoc6::bag::SharedBytes;

static void ReadParts(const KeptText& text, const SavedEntry& what) {
  BagScanner scanner(text);
  for (BagEntry found; scanner.Next(found);) {
    const SavedEntry* const entry =
        what.kind == SavedEntry::Kind::kCollection ? &what.part->self : what.part->Find(found.key);
    const bool is_part = entry != nullptr && entry->part != nullptr && found.tag == '"';
    if (is_part) ReadParts(scanner.TextOf(found), *entry);
  }
  if (scanner.faulty()) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const vndoc6::Salvaged salvaged = vndoc6::Salvage(bytes);
  if (salvaged.damages.empty() && salvaged.text != bytes) std::abort();
  ReadParts(KeptText(SharedBytes(salvaged.text)), vndoc6::DocumentForm().self);
  return 0;
}
