// One escape of the bag's text: reading it, and writing it. What escapes mean is in
// levelled_text.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vndoc6::bag {

enum class EscapeClass : uint8_t { kOpening, kClosing, kQuote, kCaret };

// What each class stands for, in the order of the enumeration.
inline constexpr std::string_view kEscapeLiterals[] = {"=~64\"", "\":", "\"", "^"};
inline constexpr std::string_view kOpening =
    kEscapeLiterals[static_cast<size_t>(EscapeClass::kOpening)];

// Stands for every level that is too large to count with. Nobody nests that deep, but a host's text
// may hold the escape, and has to come back.
inline constexpr uint64_t kEndlessLevel = UINT64_MAX;

struct Escape {
  size_t size = 0;  // in bytes, with its '^'; 0 when no escape begins here
  EscapeClass what = EscapeClass::kCaret;
  uint64_t level = 0;
};

// Level and class of an escape of two characters, by its second one. Level 0: there is none such.
struct ShortEscape {
  uint8_t level = 0;
  EscapeClass what = EscapeClass::kCaret;
};
inline constexpr char kFirstLevels[] = {'a', 'A', 'j', 'J'};
inline constexpr uint32_t kShortLevels = 9;

struct ShortEscapes {
  constexpr ShortEscapes() {
    for (uint8_t what = 0; what < 4; ++what) {
      for (uint8_t level = 1; level <= kShortLevels; ++level) {
        of[kFirstLevels[what] + level - 1] = {level, static_cast<EscapeClass>(what)};
      }
    }
  }
  ShortEscape of[256];
};
inline constexpr ShortEscapes kShortEscapes;
// Begins, after '^', an escape of level 10 or more.
inline constexpr char kLongEscape = 'z';

// Of an escape that begins with "^z".
Escape ReadLongEscape(std::string_view text);

// The escape that `text` begins with; text[0] is '^'. In line, for reading spends its time here.
inline Escape ReadEscape(std::string_view text) {
  if (text.size() < 2) return {};
  const ShortEscape found = kShortEscapes.of[static_cast<unsigned char>(text[1])];
  if (found.level != 0) return {2, found.what, found.level};
  return text[1] == kLongEscape ? ReadLongEscape(text) : Escape();
}

void AppendEscape(EscapeClass what, uint64_t level, std::string& out);

}  // namespace vndoc6::bag
