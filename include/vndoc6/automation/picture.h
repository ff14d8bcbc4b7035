// Picture: an image as the bytes of its file, which the library keeps and never decodes.
#pragma once

#include <cstdint>
#include <vector>

#include "vndoc6/automation/object.h"

namespace vndoc6::automation {

class Picture : public Object {
 public:
  std::string_view TypeName() const override { return "Picture"; }

  // The image's bytes (BMP, GIF, JPEG, ICO, WMF or EMF as the host loaded it); none for an empty
  // picture.
  virtual std::vector<uint8_t> Bytes() const = 0;
};

// The portable picture.
Ref<Picture> MakePlainPicture(std::vector<uint8_t> bytes = {});

}  // namespace vndoc6::automation
