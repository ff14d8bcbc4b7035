#include "vndoc6/bag/kept_text.h"

#include "bag/levelled_text.h"

namespace vndoc6::bag {

SharedBytes::Block::~Block() {
  const auto keeper = log.lock();
  if (keeper != nullptr && keeper->block_ == this) keeper->block_ = nullptr;
}

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
  SharedBytes bytes(std::move(plain));
  if (bytes_.block_ != nullptr) {
    bytes.block_->log = bytes_.block_->log;
    bytes.block_->origin = OffsetInFile(0);
    bytes.block_->is_copy = true;
  }
  return KeptText(std::move(bytes));
}

void KeptText::LogFaults(const std::shared_ptr<FaultLog>& log) const {
  if (bytes_.block_ == nullptr) return;
  bytes_.block_->log = log;
  log->block_ = bytes_.block_;
}

void KeptText::NoteFault(size_t offset) const {
  const auto log = bytes_.block_ != nullptr ? bytes_.block_->log.lock() : nullptr;
  if (log == nullptr) return;
  log->offsets_.insert(OffsetInFile(offset));
  log->kept_ = SharedBytes(log->block_);
}

size_t KeptText::OffsetInFile(size_t offset) const {
  const SharedBytes::Block& block = *bytes_.block_;
  return block.is_copy ? block.origin : position_ + offset;
}

}  // namespace vndoc6::bag
