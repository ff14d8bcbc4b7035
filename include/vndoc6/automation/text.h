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
