#include "vndoc6/bag/unknown_entries.h"

#include <string>
#include <unordered_set>
#include <utility>

#include "bag/bag_reader.h"
#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"
#include "bag/levelled_text.h"

namespace vndoc6::bag {

namespace {

// Whether what is written of an entry reads the same again: it is one entry, and its escapes are as
// a save writes them. Others come from damaged texts.
bool IsSound(const KeptText& entry) {
  const KeptText plain = entry.Unescaped();
  BagScanner scanner(plain);
  BagEntry only, more;
  if (!scanner.Next(only) || scanner.WholeOf(only).raw().size() != plain.raw().size()) return false;
  if (scanner.Next(more) || scanner.faulty()) return false;
  std::string written;
  AppendRelevelled(plain.raw(), 0, entry.depth(), written);
  return written == entry.raw();
}

// The key as it stands without escapes of texts around it.
std::string PlainKey(const KeptText& entry) {
  const KeptText plain = entry.Unescaped();
  BagScanner scanner(plain);
  BagEntry only;
  return scanner.Next(only) ? std::string(only.key) : std::string();
}

}  // namespace

void UnknownEntries::Set(std::vector<KeptText> entries) {
  std::erase_if(entries, [](const KeptText& entry) { return !IsSound(entry); });
  entries_ =
      entries.empty() ? nullptr : std::make_unique<std::vector<KeptText>>(std::move(entries));
}

void UnknownEntries::TakeFrom(BagReader& reader) {
  if (!reader.HasUnasked()) {
    entries_ = nullptr;
    return;
  }
  std::vector<KeptText> entries;
  reader.VisitUnasked([&](const BagEntry& entry) {
    entries.push_back(reader.WholeOf(entry));
    return false;
  });
  // The first of a key counts, however its escapes are spelt.
  std::unordered_set<std::string> keys;
  std::erase_if(entries,
                [&](const KeptText& entry) { return !keys.insert(PlainKey(entry)).second; });
  Set(std::move(entries));
}

void UnknownEntries::Write(BagWriter& writer) const {
  // A damaged text may hold what stands for nothing: written as it is meant, it reads the same
  // again.
  for (const KeptText& entry : list()) writer.Append(entry.Unescaped());
}

}  // namespace vndoc6::bag
