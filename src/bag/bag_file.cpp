#include "bag/bag_file.h"

#include <string>
#include <utility>

#include "platform/file_system.h"

namespace vndoc6::bag {

std::string_view WithoutMark(std::string_view bytes) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  return bytes.starts_with(kMark) ? bytes.substr(kMark.size()) : bytes;
}

std::optional<KeptText> ReadTextFile(TextView name) {
  std::optional<std::string> bytes = platform::ReadWholeFile(name);
  if (!bytes) return std::nullopt;
  const KeptText whole{SharedBytes(std::move(*bytes))};
  return KeptText(whole, WithoutMark(whole.raw()), 0);
}

}  // namespace vndoc6::bag
