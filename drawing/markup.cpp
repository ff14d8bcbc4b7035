#include "markup.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "vndoc6/automation/base64.h"
#include "vndoc6/automation/number_chars.h"

namespace vndoc6::drawing {
namespace {

// Whether XML 1.0 and HTML may hold this.
bool MayStand(char32_t c) {
  if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
  if (c >= 0x7F && c < 0xA0) return false;
  return !automation::IsSurrogate(c) && c != 0xFFFE && c != 0xFFFF;
}

const char* Entity(char32_t c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return nullptr;
  }
}

double Little(const std::vector<uint8_t>& bytes, size_t at, size_t count) {
  double value = 0;
  for (size_t i = count; i-- > 0;) value = value * 256 + bytes[at + i];
  return value;
}

double Big(const std::vector<uint8_t>& bytes, size_t at, size_t count) {
  double value = 0;
  for (size_t i = 0; i < count; ++i) value = value * 256 + bytes[at + i];
  return value;
}

bool Begins(const std::vector<uint8_t>& bytes, std::string_view magic, size_t least) {
  return bytes.size() >= std::max(least, magic.size()) &&
         std::equal(magic.begin(), magic.end(), bytes.begin(),
                    [](char c, uint8_t byte) { return static_cast<uint8_t>(c) == byte; });
}

// The frame header behind the other segments holds a JPEG's size.
ImageKind SniffJpeg(const std::vector<uint8_t>& bytes) {
  ImageKind kind{"image/jpeg"};
  size_t at = 2;
  while (at + 9 <= bytes.size() && bytes[at] == 0xFF) {
    const uint8_t marker = bytes[at + 1];
    const bool frame =
        marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
    if (frame) {
      kind.height = Big(bytes, at + 5, 2);
      kind.width = Big(bytes, at + 7, 2);
      break;
    }
    at += 2 + static_cast<size_t>(Big(bytes, at + 2, 2));
  }
  return kind;
}

double Signed(double bits16) { return bits16 < 32768 ? bits16 : bits16 - 65536; }

// Windows' own vector pictures. A browser shows none, but some tell their size.
ImageKind SniffMetafile(const std::vector<uint8_t>& bytes) {
  ImageKind kind;
  if (Begins(bytes, "\xD7\xCD\xC6\x9A", 22)) {
    constexpr double kPixelsPerInch = 96;
    const double scale = kPixelsPerInch / std::max(Little(bytes, 14, 2), 1.0);
    kind.width = scale * (Signed(Little(bytes, 10, 2)) - Signed(Little(bytes, 6, 2)));
    kind.height = scale * (Signed(Little(bytes, 12, 2)) - Signed(Little(bytes, 8, 2)));
    kind.name = "WMF";
  } else if (Begins(bytes, std::string_view("\1\0\t\0", 4), 18)) {
    kind.name = "WMF";
  } else if (Begins(bytes, std::string_view("\1\0\0\0", 4), 44) && bytes[40] == ' ' &&
             bytes[41] == 'E' && bytes[42] == 'M' && bytes[43] == 'F') {
    kind.width = Little(bytes, 16, 4) - Little(bytes, 8, 4) + 1;
    kind.height = Little(bytes, 20, 4) - Little(bytes, 12, 4) + 1;
    kind.name = "EMF";
  }
  constexpr double kFarthest = 100000;
  const auto is_size = [](double size) { return size > 0 && size < kFarthest; };
  if (!is_size(kind.width) || !is_size(kind.height)) kind.width = kind.height = 0;
  return kind;
}

}  // namespace

std::string Escaped(TextView text) {
  std::string out;
  out.reserve(text.size());
  size_t plain = 0;
  const auto flush = [&](size_t end) {
    automation::AppendUtf8(text.substr(plain, end - plain), out);
  };
  for (TextView rest = text; !rest.empty();) {
    const size_t at = text.size() - rest.size();
    const char32_t c = automation::TakeCodePoint(rest);
    const char* entity = Entity(c);
    if (entity == nullptr && MayStand(c)) continue;
    flush(at);
    out += entity != nullptr ? entity : "\xEF\xBF\xBD";
    plain = at + 1;
  }
  flush(text.size());
  return out;
}

std::string Number(double value) {
  if (!std::isfinite(value)) return "0";
  std::array<char, 400> buffer;
  const auto result =
      automation::ToFixedChars(buffer.data(), buffer.data() + buffer.size(), value, 2);
  std::string_view text(buffer.data(), static_cast<size_t>(result.ptr - buffer.data()));
  while (text.ends_with('0')) text.remove_suffix(1);
  if (text.ends_with('.')) text.remove_suffix(1);
  return text == "-0" ? "0" : std::string(text);
}

std::string Colour(int32_t colour) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string out = "#";
  for (int shift : {0, 8, 16}) {
    const uint32_t channel = (static_cast<uint32_t>(colour) >> shift) & 0xFF;
    out += kDigits[channel >> 4];
    out += kDigits[channel & 15];
  }
  return out;
}

ImageKind SniffImage(const std::vector<uint8_t>& bytes) {
  if (Begins(bytes, "\x89PNG", 24)) {
    return {"image/png", Big(bytes, 16, 4), Big(bytes, 20, 4)};
  }
  if (Begins(bytes, "GIF8", 10)) return {"image/gif", Little(bytes, 6, 2), Little(bytes, 8, 2)};
  if (Begins(bytes, "BM", 26)) {
    // The height of a bitmap stored from the top is negative.
    const double height = Little(bytes, 22, 4);
    return {"image/bmp", Little(bytes, 18, 4), std::min(height, 4294967296.0 - height)};
  }
  if (Begins(bytes, "\xFF\xD8\xFF", 4)) return SniffJpeg(bytes);
  if (Begins(bytes, std::string_view("\0\0\1\0", 4), 8)) {
    return {"image/x-icon", bytes[6] == 0 ? 256.0 : bytes[6], bytes[7] == 0 ? 256.0 : bytes[7]};
  }
  return SniffMetafile(bytes);
}

std::string DataUri(const char* type, const std::vector<uint8_t>& bytes) {
  std::string out = std::string("data:") + type + ";base64,";
  automation::AppendBase64(bytes, out);
  return out;
}

}  // namespace vndoc6::drawing
