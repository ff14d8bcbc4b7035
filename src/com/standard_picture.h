// StandardPicture: the platform's picture object as the library's Picture. The library keeps the
// image's bytes; the platform's object is made when a host asks for it.
#pragma once

#include "com/com.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::com {

class StandardPicture final : public automation::Picture {
 public:
  // A picture with these bytes; none for an empty one.
  explicit StandardPicture(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {}
  // A host's picture object.
  explicit StandardPicture(ComPtr<IPicture> picture) : picture_(std::move(picture)) {}

  // The handle, which is the default member of the platform's pictures.
  automation::Variant DefaultValue() override;
  std::vector<uint8_t> Bytes() const override;
  // The platform's object, always the same. Raises error 481 when the bytes are no image.
  const ComPtr<IPicture>& picture() const;

 private:
  const std::vector<uint8_t> bytes_;  // unless a host made the picture
  mutable ComPtr<IPicture> picture_;
};

}  // namespace vndoc6::com
