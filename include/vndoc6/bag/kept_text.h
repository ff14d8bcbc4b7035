// KeptText: a serialised text as it lies in the file or text it was loaded from, not copied and
// not unescaped until somebody asks.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "vndoc6/automation/text.h"

namespace vndoc6::bag {

class BagReader;
class BagWriter;
class FaultLog;

// Immutable bytes shared by all the texts kept from them. The count is not atomic: like objects,
// texts belong to one thread at a time.
class SharedBytes {
 public:
  SharedBytes() = default;
  explicit SharedBytes(std::string bytes) : block_(new Block(std::move(bytes))) {}
  SharedBytes(const SharedBytes& other) : block_(other.block_) {
    if (block_ != nullptr) ++block_->count;
  }
  SharedBytes(SharedBytes&& other) noexcept : block_(std::exchange(other.block_, nullptr)) {}
  SharedBytes& operator=(SharedBytes other) noexcept {
    std::swap(block_, other.block_);
    return *this;
  }
  ~SharedBytes() {
    if (block_ != nullptr && --block_->count == 0) delete block_;
  }
  std::string_view view() const {
    return block_ != nullptr ? std::string_view(block_->bytes) : std::string_view();
  }

 private:
  friend class FaultLog;
  friend class KeptText;
  struct Block {
    explicit Block(std::string content) : bytes(std::move(content)) {}
    ~Block();
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    std::string bytes;
    size_t count = 1;
    std::weak_ptr<FaultLog> log = {};
    // Of an unescaped copy: where what was copied lies in the file.
    bool is_copy = false;
    size_t origin = 0;
  };
  explicit SharedBytes(Block* block) : block_(block) {
    if (block_ != nullptr) ++block_->count;
  }
  Block* block_ = nullptr;
};

// A slice of shared bytes that stands for a text escaped depth() times.
class KeptText {
 public:
  KeptText() = default;
  // A host's text: depth 0, with bytes of its own.
  explicit KeptText(TextView text);
  // All of `bytes`, at depth 0.
  explicit KeptText(SharedBytes bytes);
  // `part` must lie within the bytes of `whole`.
  KeptText(const KeptText& whole, std::string_view part, uint32_t depth);

  bool empty() const { return size_ == 0; }
  uint32_t depth() const { return depth_; }
  // The bytes as they lie there, still escaped depth() times.
  std::string_view raw() const { return bytes_.view().substr(position_, size_); }
  // The text itself.
  Text ToText() const;
  // The same text at depth 0, in bytes of its own unless it is at depth 0 already.
  KeptText Unescaped() const;

  // From now on faults in any text that is kept from the same bytes are noted there.
  void LogFaults(const std::shared_ptr<FaultLog>& log) const;
  // A reader stops here, so many bytes behind the text's beginning, and drops the rest of it.
  void NoteFault(size_t offset) const;

 private:
  friend class FaultLog;
  // Where the byte with that offset in this text lies in the file.
  size_t OffsetInFile(size_t offset) const;

  SharedBytes bytes_;
  size_t position_ = 0;
  size_t size_ = 0;
  uint32_t depth_ = 0;
};

// Where the texts of one file are at fault, as far as somebody has read them.
class FaultLog {
 public:
  // How many there are; one is counted once, however often it is met.
  size_t count() const { return offsets_.size(); }
  // All bytes of the file, as long as a text is kept from them or one of them was at fault.
  KeptText File() const { return KeptText(SharedBytes(block_)); }

 private:
  friend class KeptText;
  friend class SharedBytes;

  SharedBytes::Block* block_ = nullptr;
  SharedBytes kept_;  // from the first fault on
  std::set<size_t> offsets_;
};

}  // namespace vndoc6::bag
