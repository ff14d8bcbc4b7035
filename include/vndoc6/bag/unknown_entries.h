// Entries of a saved text that its reader did not ask for: those of a newer version, as a rule.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "vndoc6/bag/kept_text.h"

namespace vndoc6 {
struct Inside;
}

namespace vndoc6::bag {

// Kept as they lie in the text, each a whole entry, and written behind the known ones in the order
// in which they came. Takes a pointer where there are none.
class UnknownEntries {
 public:
  std::span<const KeptText> list() const {
    return entries_ ? std::span<const KeptText>(*entries_) : std::span<const KeptText>();
  }
  void Set(std::vector<KeptText> entries);
  // What nobody has asked the reader for.
  void TakeFrom(BagReader& reader);
  void Write(BagWriter& writer) const;

 private:
  std::unique_ptr<std::vector<KeptText>> entries_;
};

// Whatever has a saved text of its own derives from this.
class Carrier {
 protected:
  friend struct vndoc6::Inside;
  UnknownEntries& unknown_entries() { return unknown_entries_; }
  const UnknownEntries& unknown_entries() const { return unknown_entries_; }

 private:
  UnknownEntries unknown_entries_;
};

}  // namespace vndoc6::bag
