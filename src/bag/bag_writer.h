// BagWriter: writes the text of a bag, and of the bags nested in it, straight into one buffer.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::bag {

// The text is a run of entries: key, '=', type tag, value, ':'. Type tags are in every file, never
// change one:
//
//     Text      =~64"..."     value escaped (levelled_text.h)
//     Long      =12           decimal digits, '-' first when negative
//     Boolean   =T  =F
//     Single    =s1.2         shortest form that reads back identically; also nan, inf, -inf
//     Double    =d1.2         likewise
//     Currency  =c9.5         exact decimal, up to four places
//     Date      =t45000.5     days as a Double
//     Short     =i5
//     Error     =x-2147352572
//     Picture   =pQk0...      its bytes in base64 (RFC 4648); =p alone is an empty picture
//     Empty     =e
//     Null      =n
//     Object    =o            one that is no picture; read back as Nothing
//
// A key is escaped as a text value is, and its '=' are then written "^-".
class BagWriter {
 public:
  // Appends to `out` at the given depth: 0 for a text of its own, one more for each bag around it.
  explicit BagWriter(std::string& out, uint32_t depth = 0) : out_(out), depth_(depth) {}

  // Keys that the library writes itself are plain ASCII literals without '=', '"' and '^'.
  void Add(std::string_view key, int32_t value);
  void Add(std::string_view key, bool value);
  void Add(std::string_view key, float value);
  void Add(std::string_view key, automation::Currency value);
  void Add(std::string_view key, automation::Date value);
  void Add(std::string_view key, TextView value);
  void Add(std::string_view key, const Text& value) { Add(key, TextView(value)); }
  void Add(std::string_view key, const KeptText& value);
  void AddPicture(std::string_view key, std::span<const uint8_t> bytes);
  // Any pointer would silently become a Boolean.
  template <class T>
  void Add(std::string_view key, const T* value) = delete;

  // A text entry whose value is itself a bag, written by `write(BagWriter&)`.
  template <class Write>
  void AddNested(std::string_view key, Write&& write) {
    const size_t start = OpenText(key);
    BagWriter nested(out_, depth_ + 1);
    std::forward<Write>(write)(nested);
    CloseText(start);
  }

  // The same for keys that come from a host, and any value.
  void AddVariant(TextView key, const automation::Variant& value);
  template <class Write>
  void AddNestedUnder(TextView key, Write&& write) {
    AddNested(EscapedKey(key), std::forward<Write>(write));
  }

  // All entries of a kept text, as they are.
  void Append(const KeptText& text);

  uint32_t depth() const { return depth_; }
  // Where the text goes, for a writer that copies a whole kept text at this depth.
  std::string& out() { return out_; }

 private:
  size_t OpenText(std::string_view key);
  void CloseText(size_t content_start);
  void OpenPlain(std::string_view key);
  std::string EscapedKey(TextView key) const;

  std::string& out_;
  uint32_t depth_;
};

// The text that `write(BagWriter&)` writes at depth 0.
template <class Write>
Text BagTextOf(Write&& write) {
  std::string bytes;
  BagWriter writer(bytes);
  std::forward<Write>(write)(writer);
  return automation::FromUtf8(bytes);
}

}  // namespace vndoc6::bag
