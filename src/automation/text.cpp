#include "vndoc6/automation/text.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "automation/case_folding.h"
#include "automation/room.h"

namespace vndoc6::automation {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
// Small enough for registers, and a fixed count lets compilers work on a whole block at once: a
// tenth of the time of saving.
constexpr size_t kBlock = 16;

using automation::TakeCodePoint;

// The length of the ASCII run that `text` (bytes or units) begins with.
template <class View>
size_t AsciiRun(View text) {
  using Unit = std::make_unsigned_t<std::conditional_t<sizeof(text[0]) == 1, char, int16_t>>;
  size_t run = 0;
  for (; run + kBlock <= text.size(); run += kBlock) {
    unsigned any = 0;
    for (size_t i = 0; i < kBlock; ++i) any |= static_cast<Unit>(text[run + i]);
    if (any >= 0x80) break;
  }
  while (run < text.size() && static_cast<Unit>(text[run]) < 0x80) ++run;
  return run;
}

template <class View, class Unit>
void CopyAscii(View text, Unit* out) {
  size_t done = 0;
  for (; done + kBlock <= text.size(); done += kBlock) {
    // By way of a local copy, which compilers know to be apart from the text.
    Unit block[kBlock];
    for (size_t i = 0; i < kBlock; ++i) block[i] = static_cast<Unit>(text[done + i]);
    std::memcpy(out + done, block, sizeof block);
  }
  for (; done < text.size(); ++done) out[done] = static_cast<Unit>(text[done]);
}

// Takes one code point off `bytes`, or one byte that begins none.
char32_t TakeCodePoint(std::string_view& bytes) {
  const auto byte = [&bytes](size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const char32_t lead = byte(0);
  const size_t size = lead < 0x80                    ? 1
                      : lead >= 0xC2 && lead <= 0xDF ? 2
                      : lead >= 0xE0 && lead <= 0xEF ? 3
                      : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                     : 0;
  char32_t code_point = size <= 1 ? lead : lead & (0x7FU >> size);
  bool well_formed = size != 0 && size <= bytes.size();
  for (size_t i = 1; well_formed && i < size; ++i) {
    well_formed = (byte(i) & 0xC0) == 0x80;
    code_point = (code_point << 6) | (byte(i) & 0x3F);
  }
  // Longer forms than needed are refused; surrogates are not, for texts may hold lone ones.
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  well_formed = well_formed && code_point >= kLeast[size] && code_point <= 0x10FFFF;
  bytes.remove_prefix(well_formed ? size : 1);
  return well_formed ? code_point : kReplacement;
}

void AppendCodePoint(char32_t code_point, std::string& out) {
  const auto tail = [code_point](int shift) {
    return static_cast<char>(0x80 | ((code_point >> shift) & 0x3F));
  };
  if (code_point < 0x80) {
    out += static_cast<char>(code_point);
  } else if (code_point < 0x800) {
    out += {static_cast<char>(0xC0 | (code_point >> 6)), tail(0)};
  } else if (code_point < 0x10000) {
    out += {static_cast<char>(0xE0 | (code_point >> 12)), tail(6), tail(0)};
  } else {
    out += {static_cast<char>(0xF0 | (code_point >> 18)), tail(12), tail(6), tail(0)};
  }
}

void AppendCodePoint(char32_t code_point, Text& out) {
  if (code_point < 0x10000) {
    out += static_cast<char16_t>(code_point);
  } else {
    out += {static_cast<char16_t>(0xD800 + ((code_point - 0x10000) >> 10)),
            static_cast<char16_t>(0xDC00 + (code_point & 0x3FF))};
  }
}

// What both conversions are: ASCII runs at once, code points between them one by one.
template <class From, class To>
void Convert(From text, To& out) {
  while (!text.empty()) {
    const size_t run = AsciiRun(text);
    const size_t end = out.size();
    out.resize(end + run);
    CopyAscii(text.substr(0, run), out.data() + end);
    text.remove_prefix(run);
    // One allocation for the rest, which seldom becomes longer.
    if (!text.empty()) MakeRoom(out, text.size());
    while (!text.empty() && static_cast<char32_t>(text[0]) >= 0x80) {
      AppendCodePoint(TakeCodePoint(text), out);
    }
  }
}

char16_t AsciiLowerUnit(char16_t unit) {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

template <class To>
To Folded(TextView text) {
  // Nearly all keys are ASCII throughout: 9 % of the time of creating and of loading steps.
  const size_t run = AsciiRun(text);
  To folded(run, {});
  std::transform(
      text.begin(), text.begin() + static_cast<std::ptrdiff_t>(run), folded.begin(),
      [](char16_t unit) { return static_cast<typename To::value_type>(AsciiLowerUnit(unit)); });
  text.remove_prefix(run);
  while (!text.empty()) AppendCodePoint(FoldCodePoint(TakeCodePoint(text)), folded);
  return folded;
}

}  // namespace

void AppendUtf8(TextView text, std::string& out) { Convert(text, out); }

std::string ToUtf8(TextView text) {
  std::string out;
  AppendUtf8(text, out);
  return out;
}

void AppendFromUtf8(std::string_view bytes, Text& out) { Convert(bytes, out); }

Text FromUtf8(std::string_view bytes) {
  Text out;
  AppendFromUtf8(bytes, out);
  return out;
}

char32_t FoldCodePoint(char32_t code_point) {
  if (code_point < 0x80) {
    return code_point >= U'A' && code_point <= U'Z' ? code_point + (U'a' - U'A') : code_point;
  }
  const CaseFoldingRow* const end = kCaseFolding + kCaseFoldingRows;
  const CaseFoldingRow* const row = std::lower_bound(
      kCaseFolding, end, code_point,
      [](const CaseFoldingRow& candidate, char32_t sought) { return candidate.last < sought; });
  const bool folds =
      row != end && code_point >= row->first && (code_point - row->first) % row->step == 0;
  return folds ? code_point + static_cast<char32_t>(row->delta) : code_point;
}

Text FoldCase(TextView text) { return Folded<Text>(text); }
std::string FoldedUtf8(TextView text) { return Folded<std::string>(text); }

bool EqualsFolded(TextView left, TextView right) {
  while (!left.empty() && !right.empty()) {
    if (FoldCodePoint(TakeCodePoint(left)) != FoldCodePoint(TakeCodePoint(right))) return false;
  }
  return left.empty() && right.empty();
}

Text AsciiLower(TextView text) {
  Text lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), AsciiLowerUnit);
  return lower;
}

bool EqualsAsciiFolded(std::string_view left, TextView right) {
  return std::equal(
      left.begin(), left.end(), right.begin(), right.end(), [](char ascii, char16_t unit) {
        return AsciiLowerUnit(static_cast<unsigned char>(ascii)) == AsciiLowerUnit(unit);
      });
}

}  // namespace vndoc6::automation
