// Whatever lies in a document's file: it is loaded or refused, reads whole, and once it was saved,
// every further load and save brings the same.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include "automation/error.h"
#include "compare/compare.h"
#include "core/document.h"
#include "tests/support/temporary_folder.h"

using vndoc6::Text;
using vndoc6::vnDocument;
using vndoc6::automation::Make;
using vndoc6::automation::Ref;

namespace {

// Null when the file is refused. A file of the older format asks for a converter; there is none.
Ref<vnDocument> Load(const Text& name) {
  const auto document = Make<vnDocument>();
  try {
    return document->Load(name, u"") ? document : nullptr;
  } catch (const vndoc6::automation::Error& error) {
    if (error.number() != vndoc6::automation::kCannotCreateObject) throw;
    return nullptr;
  }
}

// Tells what differs.
bool IsSame(vnDocument& left, vnDocument& right) {
  bool same = true;
  for (const vndoc6::Difference& difference :
       vndoc6::Compare(left, right, {.ignore_identity = true})) {
    std::cerr << vndoc6::automation::ToUtf8(vndoc6::DescribeDifference(difference)) << '\n';
    same = false;
  }
  return same;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const vndoc6::testing::TemporaryFolder folder;
  folder.Write("file", {reinterpret_cast<const char*>(data), size});
  const Text name = folder.Name("file");
  {
    const Ref<vnDocument> document = Load(name);
    if (!document) return 0;
    // Reads everything, and finds it equal to itself.
    if (!IsSame(*document, *document)) std::abort();
    document->EnableWrite(u"");
    if (!document->AllowWrite()) return 0;
    try {
      if (!document->Save()) std::abort();
    } catch (const vndoc6::automation::Error& error) {
      // The counter may be at its end.
      if (error.number() != vndoc6::automation::kOverflow) throw;
      return 0;
    }
  }
  const Ref<vnDocument> unread = Load(name);
  if (!unread || !unread->Save()) std::abort();
  const Ref<vnDocument> read = Load(name);
  if (!read || !IsSame(*unread, *read)) std::abort();
  if (!read->Save()) std::abort();
  if (const Ref<vnDocument> again = Load(name); !again || !IsSame(*read, *again)) std::abort();
  return 0;
}
