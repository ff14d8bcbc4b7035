#include "vndoc6/bag/unknown_entries.h"

#include <utility>

#include "bag/bag_reader.h"
#include "bag/bag_writer.h"

namespace vndoc6::bag {

void UnknownEntries::Set(std::vector<KeptText> entries) {
  entries_ =
      entries.empty() ? nullptr : std::make_unique<std::vector<KeptText>>(std::move(entries));
}

void UnknownEntries::TakeFrom(BagReader& reader) {
  std::vector<KeptText> entries;
  if (reader.HasUnasked()) {
    reader.VisitUnasked([&](const BagEntry& entry) {
      entries.push_back(reader.WholeOf(entry));
      return false;
    });
  }
  Set(std::move(entries));
}

void UnknownEntries::Write(BagWriter& writer) const {
  // A damaged text may hold what stands for nothing: written as it is meant, it reads the same
  // again.
  for (const KeptText& entry : list()) writer.Append(entry.Unescaped());
}

}  // namespace vndoc6::bag
