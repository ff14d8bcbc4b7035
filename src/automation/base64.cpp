#include "vndoc6/automation/base64.h"

#include <algorithm>
#include <array>

#include "automation/room.h"

namespace vndoc6::automation {
namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr uint8_t kNoDigit = 64;

constexpr std::array<uint8_t, 256> MakeValues() {
  std::array<uint8_t, 256> values{};
  for (uint8_t& value : values) value = kNoDigit;
  for (uint8_t i = 0; i < kNoDigit; ++i) values[static_cast<unsigned char>(kDigits[i])] = i;
  return values;
}
constexpr std::array<uint8_t, 256> kValues = MakeValues();

}  // namespace

void AppendBase64(std::span<const uint8_t> bytes, std::string& out) {
  automation::MakeRoom(out, (bytes.size() + 2) / 3 * 4);
  for (size_t i = 0; i < bytes.size(); i += 3) {
    const size_t count = std::min<size_t>(bytes.size() - i, 3);
    uint32_t group = 0;
    for (size_t k = 0; k < 3; ++k) group = group << 8 | (k < count ? bytes[i + k] : 0U);
    for (size_t k = 0; k < 4; ++k) {
      out += k <= count ? kDigits[group >> (18 - 6 * k) & 63] : '=';
    }
  }
}

std::optional<std::vector<uint8_t>> FromBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  std::vector<uint8_t> bytes;
  bytes.reserve(text.size() / 4 * 3);
  const size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
  uint32_t group = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const bool pads = i >= text.size() - padding;
    const uint8_t value = pads ? 0 : kValues[static_cast<unsigned char>(text[i])];
    if (value == kNoDigit) return std::nullopt;
    group = group << 6 | value;
    if (i % 4 != 3) continue;
    for (int shift = 16; shift >= 0; shift -= 8) bytes.push_back(group >> shift & 0xFF);
    group = 0;
  }
  bytes.resize(bytes.size() - padding);
  return bytes;
}

}  // namespace vndoc6::automation
