// The escapes of the bag's text, which make a quote cost the same however deep it is nested.
//
// A bag's text stands between quotes in the bag around it, five levels deep in a document. Escaping
// therefore counts instead of repeating: an escape is '^' and one character that says what it
// stands for and how often it has been escaped. Escaping a text replaces, from left to right,
//
//     =~64"   by  ^a      the opening of a text entry        levels 1..9: a..i
//     ":      by  ^A      the closing of a text entry        levels 1..9: A..I
//     "       by  ^j      any other quote                    levels 1..9: j..r
//     ^       by  ^J      a '^' that begins no escape        levels 1..9: J..R
//     ^x      by  the same escape one level up
//
// and from level 10 on an escape is "^z", the class (o, c, q or i in the order above), the level
// in decimal without leading zeros, and ';'. Unescaping is the exact inverse. Escaping n times is
// one pass that counts n levels at once, and so is unescaping.
//
// Texts travel as UTF-8 bytes here; every character above is ASCII. These characters are in every
// file: never change one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vndoc6::bag {

// Appends `text` escaped `levels` times (0: as it is).
void AppendEscaped(std::string_view text, uint32_t levels, std::string& out);
// Appends `text` unescaped `levels` times. A '^' that begins no escape stays as it is.
void AppendUnescaped(std::string_view text, uint32_t levels, std::string& out);
// Appends a text escaped `from` times as it is when escaped `to` times.
void AppendRelevelled(std::string_view text, uint32_t from, uint32_t to, std::string& out);

}  // namespace vndoc6::bag
