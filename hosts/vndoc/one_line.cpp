#include "one_line.h"

namespace vndoc {
namespace {

bool IsControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }
// What turns the direction of all that follows it, also behind the text.
bool TurnsDirection(char32_t c) {
  return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

}  // namespace

std::string OneLine(vndoc6::TextView text) {
  vndoc6::Text line;
  while (!text.empty()) {
    vndoc6::TextView rest = text;
    const char32_t code_point = vndoc6::automation::TakeCodePoint(rest);
    if (vndoc6::automation::IsSurrogate(code_point)) {
      line += u'\xFFFD';
    } else if (!IsControl(code_point) && !TurnsDirection(code_point)) {
      line += text.substr(0, text.size() - rest.size());
    } else if (!line.empty() && line.back() != u' ') {
      line += u' ';
    }
    text = rest;
  }
  return vndoc6::automation::ToUtf8(line);
}

}  // namespace vndoc
