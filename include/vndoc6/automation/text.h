// The library's text: UTF-16 code units, as automation strings are. Any sequence of units is a
// valid Text, lone surrogates and NUL included.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vndoc6 {

using Text = std::u16string;
using TextView = std::u16string_view;

namespace automation {

inline bool IsHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
inline bool IsLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
inline bool IsSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }

// Takes the first code point off a text that is not empty; a lone surrogate is taken as itself.
inline char32_t TakeCodePoint(TextView& text) {
  const char32_t unit = text[0];
  const bool paired = IsHighSurrogate(unit) && text.size() > 1 && IsLowSurrogate(text[1]);
  const char32_t code_point =
      paired ? 0x10000 + ((unit - 0xD800) << 10) + (text[1] - 0xDC00) : unit;
  text.remove_prefix(paired ? 2 : 1);
  return code_point;
}

// UTF-8 of a text. A lone surrogate becomes its three-byte form, so FromUtf8 gives it back.
std::string ToUtf8(TextView text);
void AppendUtf8(TextView text, std::string& out);

// The text of UTF-8 bytes. Three-byte surrogates become lone surrogates again; any other byte
// that is not part of a well-formed sequence becomes U+FFFD. Never fails.
Text FromUtf8(std::string_view bytes);
void AppendFromUtf8(std::string_view bytes, Text& out);

// Unicode simple case folding (CaseFolding.txt, status C and S), the same on every platform and
// in every locale. Maps each code point to one code point.
Text FoldCase(TextView text);
// ToUtf8 of the same.
std::string FoldedUtf8(TextView text);
bool EqualsFolded(TextView left, TextView right);
// FoldCase of one code point.
char32_t FoldCodePoint(char32_t code_point);

// Upper and lower case of the ASCII letters only: for file name endings and member names.
Text AsciiLower(TextView text);
bool EqualsAsciiFolded(std::string_view left, TextView right);

}  // namespace automation
}  // namespace vndoc6
