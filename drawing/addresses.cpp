#include "addresses.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vndoc6::drawing {
namespace {

bool IsLetter(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

bool IsWebAddress(const Text& name) {
  std::string beginning;
  for (const char16_t unit : name.substr(0, 8)) {
    beginning += unit < 0x80 ? static_cast<char>(unit | (IsLetter(unit) ? 0x20 : 0)) : '?';
  }
  constexpr std::array kSchemes = {"http://", "https://", "mailto:"};
  return std::any_of(kSchemes.begin(), kSchemes.end(),
                     [&](const char* scheme) { return beginning.starts_with(scheme); });
}

// Percent signs for what an address has another use for; of a web address its own signs stay.
std::string Encoded(const Text& text, std::string_view kept) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";
  std::string out;
  for (const char byte : automation::ToUtf8(text)) {
    if (kPlain.find(byte) != kPlain.npos || kept.find(byte) != kept.npos) {
      out += byte;
      continue;
    }
    const auto value = static_cast<unsigned char>(byte);
    out += '%';
    out += kDigits[value >> 4];
    out += kDigits[value & 15];
  }
  return out;
}

}  // namespace

std::string AddressOf(const Text& name, const Text& folder) {
  if (IsWebAddress(name)) return Encoded(name, ":?#[]@!$()*+,;=%");
  Text path = name;
  std::replace(path.begin(), path.end(), u'\\', u'/');
  if (path.starts_with(u"//")) return "file:" + Encoded(path, "");
  if (path.size() > 2 && IsLetter(path[0]) && path[1] == u':' && path[2] == u'/') {
    return "file:///" + Encoded(path.substr(0, 1), "") + ":" + Encoded(path.substr(2), "");
  }
  if (path.starts_with(u"/")) return "file://" + Encoded(path, "");
  return folder.empty() ? Encoded(path, "") : AddressOf(folder) + "/" + Encoded(path, "");
}

}  // namespace vndoc6::drawing
