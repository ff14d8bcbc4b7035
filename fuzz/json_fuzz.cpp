// Whatever JSON says: an error in words, or a document whose own JSON makes the same document.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "hosts/vndoc/document_json.h"

using vndoc6::vnDocument;
using vndoc6::automation::Ref;

namespace {

// Null when the text is refused.
Ref<vnDocument> DocumentFrom(const std::string& json) {
  std::istringstream text(json);
  try {
    return vndoc::DocumentFromJson(text);
  } catch (const vndoc::Failure& failure) {
    if (std::string(failure.what()).empty()) throw;
    return nullptr;
  }
}

std::string JsonOf(vnDocument& document) {
  std::ostringstream json;
  vndoc::WriteJson(document, json);
  return json.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const Ref<vnDocument> document =
      DocumentFrom(std::string(reinterpret_cast<const char*>(data), size));
  if (!document) return 0;
  const std::string json = JsonOf(*document);
  const Ref<vnDocument> again = DocumentFrom(json);
  if (!again) std::abort();
  if (const std::string same = JsonOf(*again); same != json) {
    std::cerr << json << same;
    std::abort();
  }
  return 0;
}
