#include "one_line.h"

namespace vndoc {
namespace {

bool IsControl(char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit < 0xA0); }
// What turns the direction of all that follows it, also behind the text.
bool TurnsDirection(char16_t unit) {
  return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

}  // namespace

std::string OneLine(vndoc6::TextView text) {
  vndoc6::Text line;
  for (size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const bool paired = unit >= 0xD800 && unit < 0xDC00 && i + 1 < text.size() &&
                        text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
    if (paired) {
      line += unit;
      line += text[++i];
    } else if (unit >= 0xD800 && unit <= 0xDFFF) {
      line += u'\xFFFD';
    } else if (!IsControl(unit) && !TurnsDirection(unit)) {
      line += unit;
    } else if (!line.empty() && line.back() != u' ') {
      line += u' ';
    }
  }
  return vndoc6::automation::ToUtf8(line);
}

}  // namespace vndoc
