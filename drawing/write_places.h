// Writing a layout into its document.
#pragma once

#include "picture.h"
#include "vndoc6/drawing.h"

namespace vndoc6::drawing {

// Gives the document the places of all that the drawing says was laid out.
LaidOut WritePlaces(const Drawing& drawing, vnDocument& document);

}  // namespace vndoc6::drawing
