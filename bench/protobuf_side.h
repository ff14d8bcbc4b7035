// The same content in protobuf: a message an object, a field a property.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "bench/content.h"

namespace vndoc6::bench {

// All the content as the generated classes hold it.
class ProtobufContent {
 public:
  explicit ProtobufContent(const Content<std::string>& content);
  // Throws std::runtime_error when the bytes hold none.
  explicit ProtobufContent(const std::string& bytes);
  ~ProtobufContent();
  // Visits every field. Gives a number that depends on all of them.
  size_t Walk() const;
  std::string Bytes() const;

 private:
  struct Messages;
  std::unique_ptr<Messages> messages_;
};

}  // namespace vndoc6::bench
