#include "vndoc6/bag/kept_text.h"

#include "bag/levelled_text.h"

namespace vndoc6::bag {

KeptText::KeptText(TextView text) : KeptText(SharedBytes(automation::ToUtf8(text))) {}

KeptText::KeptText(SharedBytes bytes) : bytes_(std::move(bytes)), size_(bytes_.view().size()) {}

KeptText::KeptText(const KeptText& whole, std::string_view part, uint32_t depth)
    : bytes_(whole.bytes_),
      position_(part.empty() ? 0 : static_cast<size_t>(part.data() - bytes_.view().data())),
      size_(part.size()),
      depth_(depth) {}

Text KeptText::ToText() const {
  if (depth_ == 0 || raw().find('^') == std::string_view::npos) return automation::FromUtf8(raw());
  std::string plain;
  AppendUnescaped(raw(), depth_, plain);
  return automation::FromUtf8(plain);
}

KeptText KeptText::Unescaped() const {
  if (depth_ == 0) return *this;
  std::string plain;
  AppendUnescaped(raw(), depth_, plain);
  return KeptText(SharedBytes(std::move(plain)));
}

}  // namespace vndoc6::bag
