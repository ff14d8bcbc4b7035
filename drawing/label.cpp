#include "label.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vndoc6::drawing {
namespace {

struct CodePoint {
  char32_t value;
  size_t units;  // 1 or 2
};

CodePoint CodePointAt(TextView text, size_t at) {
  text.remove_prefix(at);
  const size_t before = text.size();
  const char32_t value = automation::TakeCodePoint(text);
  return {value, before - text.size()};
}

struct Range {
  char32_t first, last;
};

template <size_t N>
bool IsIn(const std::array<Range, N>& ranges, char32_t c) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [c](const Range& range) { return c >= range.first && c <= range.last; });
}

// Marks that stand on the letter before them, joiners and variation selectors.
constexpr std::array kMarks = {
    Range{0x300, 0x36F},   Range{0x483, 0x489},   Range{0x591, 0x5BD},    Range{0x610, 0x61A},
    Range{0x64B, 0x65F},   Range{0x93A, 0x93C},   Range{0x941, 0x948},    Range{0xE31, 0xE31},
    Range{0xE34, 0xE3A},   Range{0xE47, 0xE4E},   Range{0x1AB0, 0x1AFF},  Range{0x200B, 0x200F},
    Range{0x20D0, 0x20FF}, Range{0xFE00, 0xFE0F}, Range{0x1F3FB, 0x1F3FF}};
// Ideographs, kana, Hangul, full-width forms and emoji: as wide as high, and lines may break
// between any two of them other than Hangul.
constexpr std::array kWide = {
    Range{0x1100, 0x115F},   Range{0x2E80, 0x303E},  Range{0x3041, 0xA4CF}, Range{0xAC00, 0xD7A3},
    Range{0xF900, 0xFAFF},   Range{0xFE30, 0xFE4F},  Range{0xFF00, 0xFF60}, Range{0xFFE0, 0xFFE6},
    Range{0x1F300, 0x1FAFF}, Range{0x20000, 0x3FFFD}};
constexpr std::array kRightToLeft = {Range{0x5BE, 0x8FF}, Range{0xFB1D, 0xFDFF},
                                     Range{0xFE70, 0xFEFC}, Range{0x10800, 0x10FFF},
                                     Range{0x1E800, 0x1EFFF}};

// Closing marks and small kana, which never begin a line.
bool StaysWithPrevious(char32_t c) {
  constexpr std::u32string_view kClosing =
      U")]}.,:;!?%"
      U"\u00BB\u2019\u201D\u2026\u3001\u3002\u300D\u300F\u3011\u30FC\uFF01\uFF09\uFF0C\uFF0E"
      U"\uFF1A\uFF1B\uFF1F\u3041\u3043\u3045\u3047\u3049\u3063\u3083\u3085\u3087\u30C3\u30E3\u30E5"
      U"\u30E7";
  return IsIn(kMarks, c) || kClosing.find(c) != std::u32string_view::npos;
}

bool IsBlank(char32_t c) { return c == ' ' || c == '\t' || c == 0x3000 || c == 0x200B; }

bool BreaksAfter(char32_t c) {
  return IsBlank(c) || c == '-' || c == '/' || c == '\\' || c == 0x2010 || c == 0x2013 ||
         c == 0x2014;
}

double WidthOf(char32_t c) {
  constexpr std::u32string_view kNarrow = U" ijlI.,:;'|!()[]`ft\u00A0\u2019";
  constexpr std::u32string_view kBroad = U"mwMW@%\u2014\u0416\u0428\u0429\u042E\u0436\u0448\u0449";
  if (IsIn(kMarks, c)) return 0;
  if (IsIn(kWide, c)) return 1.05;
  if (kNarrow.find(c) != std::u32string_view::npos) return .36;
  if (kBroad.find(c) != std::u32string_view::npos) return .92;
  if (c >= 'A' && c <= 'Z') return .68;
  return .58;
}

bool IsHangul(char32_t c) {
  return (c >= 0x1100 && c <= 0x115F) || (c >= 0x3131 && c <= 0x318E) ||
         (c >= 0xAC00 && c <= 0xD7A3);
}

// Whether a line may end between two characters.
bool MayBreak(char32_t before, char32_t after) {
  if (IsBlank(after) || StaysWithPrevious(after)) return false;
  if (BreaksAfter(before)) return true;
  // Korean has blanks between its words, and breaks there only.
  const auto breaks = [](char32_t c) { return IsIn(kWide, c) && !IsHangul(c); };
  return breaks(before) || breaks(after);
}

Text Trimmed(TextView line) {
  while (!line.empty() && IsBlank(line.back())) line.remove_suffix(1);
  while (!line.empty() && IsBlank(line.front())) line.remove_prefix(1);
  return Text(line);
}

// One paragraph's lines.
void WrapParagraph(TextView text, double width, double scale, std::vector<Text>& lines) {
  size_t start = 0;       // of the line
  size_t last_break = 0;  // where it may end; `start` for nowhere yet
  double line_width = 0;
  double width_at_break = 0;
  char32_t previous = 0;
  for (size_t at = 0; at < text.size();) {
    const CodePoint c = CodePointAt(text, at);
    if (at > start && MayBreak(previous, c.value)) {
      last_break = at;
      width_at_break = line_width;
    }
    const double advance = WidthOf(c.value) * scale;
    if (line_width + advance > width && at > start && !IsBlank(c.value) && advance > 0) {
      const size_t end = last_break > start ? last_break : at;
      lines.push_back(Trimmed(text.substr(start, end - start)));
      line_width = last_break > start ? line_width - width_at_break : 0;
      start = last_break = end;
    }
    line_width += advance;
    previous = c.value;
    at += c.units;
  }
  lines.push_back(Trimmed(text.substr(start)));
}

}  // namespace

double TextWidth(TextView text, bool bold) {
  double width = 0;
  for (size_t at = 0; at < text.size();) {
    const CodePoint c = CodePointAt(text, at);
    width += WidthOf(c.value);
    at += c.units;
  }
  return bold ? width * 1.1 : width;
}

std::vector<Text> WrapText(TextView text, double width, bool bold) {
  std::vector<Text> lines;
  size_t start = 0;
  for (size_t i = 0; i <= text.size(); ++i) {
    if (i < text.size() && text[i] != '\n' && text[i] != '\r') continue;
    WrapParagraph(text.substr(start, i - start), width, bold ? 1.1 : 1, lines);
    if (i + 1 < text.size() && text[i] == '\r' && text[i + 1] == '\n') ++i;
    start = i + 1;
  }
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

double WidestWord(TextView text, bool bold) {
  double widest = 0;
  double width = 0;
  char32_t previous = 0;
  for (size_t at = 0; at < text.size();) {
    const CodePoint c = CodePointAt(text, at);
    if (MayBreak(previous, c.value) || c.value == '\n' || c.value == '\r') width = 0;
    if (!IsBlank(c.value)) width += WidthOf(c.value);
    widest = std::max(widest, width);
    previous = c.value;
    at += c.units;
  }
  return bold ? widest * 1.1 : widest;
}

// Long labels get wider before they are cut.
LineLabel SetLineLabel(TextView text, double size, bool bold) {
  constexpr size_t kMostLines = 4;
  constexpr double kNarrowest = .52;  // of a letter, on the whole
  LineLabel label;
  for (const double width : {150.0, 220.0, 300.0}) {
    label.lines = WrapText(text, width / size, bold);
    if (label.lines.size() <= kMostLines) break;
  }
  CutLines(label.lines, 2 * kMostLines);
  for (const Text& line : label.lines) {
    const double letters = static_cast<double>(line.size()) * kNarrowest;
    label.width = std::max(label.width, std::max(TextWidth(line, bold), letters) * size);
  }
  label.height = static_cast<double>(label.lines.size()) * size * kLineHeight;
  return label;
}

void CutLines(std::vector<Text>& lines, size_t count) {
  if (lines.size() <= count) return;
  lines.resize(count);
  if (lines.empty()) return;
  Text& last = lines.back();
  // A surrogate pair goes as a whole.
  if (last.size() > 1) last.pop_back();
  if (!last.empty() && automation::IsHighSurrogate(last.back())) last.pop_back();
  last += u'\u2026';
}

bool RunsRightToLeft(TextView text) {
  for (size_t at = 0; at < text.size();) {
    const CodePoint c = CodePointAt(text, at);
    if (IsIn(kRightToLeft, c.value)) return true;
    const bool letter =
        (c.value >= 'A' && c.value <= 'Z') || (c.value >= 'a' && c.value <= 'z') ||
        (c.value >= 0xC0 && !IsIn(kMarks, c.value) && !(c.value >= 0x2000 && c.value < 0x2C00));
    if (letter) return false;
    at += c.units;
  }
  return false;
}

}  // namespace vndoc6::drawing
