// Whatever lies in a document's file: it is loaded or refused, reads whole, and once it was saved,
// every further load and save brings the same.
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "tests/support/memory_disk.h"
#include "tests/support/saved_text.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/content/compare.h"
#include "vndoc6/content/content.h"
#include "vndoc6/document/document.h"

using vndoc6::Text;
using vndoc6::vnDocument;
using vndoc6::automation::Make;
using vndoc6::automation::Ref;
using vndoc6::testing::MemoryDisk;
using vndoc6::testing::SavedText;

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

// Builds every object, as a host does that reads them all; comparisons and walks leave objects that
// are kept as text as unread as they were.
void ReadForGood(vndoc6::automation::Object& object) {
  vndoc6::ContentReader reader;
  for (const vndoc6::Content& content : reader.Read(object)) {
    if (content.is_part && content.value.ToObject()) ReadForGood(*content.value.ToObject());
  }
  if (!vndoc6::ContentReader::IsCollection(object)) return;
  for (const vndoc6::ListMember& member : vndoc6::ContentReader::Members(object)) {
    ReadForGood(*member.object);
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

// The text without the keys of figures, each of which gets another one with every save.
std::string WithoutFigureKeys(std::string text) {
  constexpr std::string_view kFigure = "Fig^bK^c";
  constexpr size_t kKeySize = 38;
  for (size_t at = 0; (at = text.find(kFigure, at)) != text.npos;) {
    at += kFigure.size();
    text.erase(at, kKeySize);
  }
  return text;
}

// Whether a document writes what the file `name` holds, unread as well as read whole. Then further
// loads and saves bring the same, and there is no need to read them all.
bool WritesWhatItReads(const Text& name, const std::string& bytes) {
  const Ref<vnDocument> document = Load(name);
  if (!document) std::abort();
  if (SavedText(*document) != bytes) return false;
  ReadForGood(*document);
  return WithoutFigureKeys(SavedText(*document)) == WithoutFigureKeys(bytes);
}

// Whatever is written, hosts read the same of it.
void CheckThatSavesKeepTheContent(const Text& name) {
  const Ref<vnDocument> unread = Load(name);
  if (!unread || !unread->Save()) std::abort();
  const Ref<vnDocument> read = Load(name);
  if (!read || !IsSame(*unread, *read)) std::abort();
  if (!read->Save()) std::abort();
  if (const Ref<vnDocument> again = Load(name); !again || !IsSame(*read, *again)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static MemoryDisk disk;
  const std::string file = std::string(MemoryDisk::kFolder) + "file";
  disk.Start({{file, {reinterpret_cast<const char*>(data), size}}});
  const Text name = vndoc6::automation::FromUtf8(file);
  {
    const Ref<vnDocument> document = Load(name);
    if (!document) return 0;
    if (!IsSame(*document, *document)) std::abort();
    // What has no key gets one for good.
    ReadForGood(*document);
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
  if (!WritesWhatItReads(name, disk.Now().at(file))) CheckThatSavesKeepTheContent(name);
  return 0;
}
