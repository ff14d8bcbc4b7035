// The entries of a damaged text, as far as they can be told apart.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "content/salvage_marks.h"
#include "document/saved_form.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::salvage {

// Bytes of the file, from begin to before end.
struct Span {
  size_t begin = 0;
  size_t end = 0;

  size_t size() const { return end - begin; }
  bool empty() const { return begin == end; }
};

// A text in the file: its bytes and the marks among them. `depth` texts lie around it.
struct Region {
  Span bytes;
  size_t first_mark = 0;
  size_t end_mark = 0;
  uint32_t depth = 0;
};

class DamagedFile {
 public:
  explicit DamagedFile(bag::KeptText text);

  std::string_view View(Span span) const { return bytes_.substr(span.begin, span.size()); }
  // The same as a text of so many levels.
  bag::KeptText Kept(Span span, uint32_t depth) const { return {kept_, View(span), depth}; }
  const std::vector<Mark>& marks() const { return marks_; }
  Region Whole() const { return {{0, bytes_.size()}, 0, marks_.size(), 0}; }

 private:
  bag::KeptText kept_;  // at depth 0
  std::string_view bytes_;
  std::vector<Mark> marks_;
};

struct FoundEntry {
  Span all;
  Span key;        // as it lies there; empty when it is lost
  char tag = '"';  // as in SavedEntry
  Region inside;   // of a text
  // Of a text: whether its opening and its closing are there.
  bool opened = true;
  bool closed = true;
  // Whether both are spelled as they should.
  bool spelled = true;
};

struct FoundEntries {
  std::vector<FoundEntry> entries;
  std::vector<Span> rubbish;  // what is no part of any
};

// The entries of a text that was `what`. Behind a fault it goes on with the next entry whose key is
// known there, or whose text begins.
FoundEntries FindEntries(const DamagedFile& file, const Region& region, const SavedEntry& what);

}  // namespace vndoc6::salvage
