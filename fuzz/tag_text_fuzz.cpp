// A tag is shorter than the field it stands for, and text without fields is only told its
// generator, once.
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "templates/tag_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr std::u16string_view kGenerator = u"{\\*\\generator VNDoc6;}";
  const std::u16string value(data, data + size);
  std::u16string result = vndoc6::TagProcessorText(value);
  if (result.size() <= value.size()) return 0;
  const size_t added = result.find(kGenerator);
  if (added == std::u16string::npos) std::abort();
  if (vndoc6::TagProcessorText(result) != result) std::abort();
  if (value.find(u"\\generator") != std::u16string::npos) return 0;
  result.erase(added, kGenerator.size());
  if (result != value) std::abort();
  return 0;
}
