// The colours of a theme for those of a document.
#pragma once

#include <cstdint>
#include <string>

#include "vndoc6/drawing.h"

namespace vndoc6::drawing {

class Palette {
 public:
  explicit Palette(Theme theme) : theme_(theme) {}

  // Of the chart, of what is filled, of lines; red stands in the low byte.
  std::string Back(int32_t colour) const;
  std::string Fill(int32_t colour) const;
  std::string Pen(int32_t colour) const;
  // Of a text, on what is filled with a colour.
  std::string Ink(int32_t colour, int32_t fill) const;
  bool HasShadows() const { return theme_ != Theme::kPrint; }

 private:
  Theme theme_;
};

}  // namespace vndoc6::drawing
