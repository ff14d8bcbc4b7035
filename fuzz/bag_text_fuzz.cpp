// Whatever is found in a text, written and read again, is found again.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"

using vndoc6::bag::BagEntry;
using vndoc6::bag::BagScanner;
using vndoc6::bag::BagWriter;
using vndoc6::bag::KeptText;
using vndoc6::bag::SharedBytes;

// The entries of `text`, and of the bags in it, written anew.
static std::string Rewritten(const KeptText& text) {
  std::string bytes;
  BagWriter writer(bytes);
  BagScanner scanner(text);
  BagEntry entry;
  for (vndoc6::automation::Variant value; scanner.Next(entry);) {
    if (scanner.ValueOf(entry, value)) writer.AddVariant(scanner.KeyOf(entry), value);
    if (entry.tag == '"' && text.depth() < 12) Rewritten(scanner.TextOf(entry));
  }
  if (scanner.faulty() && scanner.fault_offset() >= text.raw().size()) std::abort();
  return bytes;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  const std::string written = Rewritten(KeptText(SharedBytes(bytes)));
  if (Rewritten(KeptText(SharedBytes(written))) != written) std::abort();
  return 0;
}
