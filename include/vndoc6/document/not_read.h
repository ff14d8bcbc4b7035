// What could not be read of a document's file.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "vndoc6/bag/kept_text.h"

namespace vndoc6 {

// The text of an object ends at the first fault: what stands behind it was not read.
struct NotRead {
  // The keys that lead to the object from the document, with slashes: "S/T{key}/Fig". Empty for
  // the document itself.
  std::string place;
  // Where the fault lies in the file, in bytes.
  size_t offset = 0;
  // From there to the end of the object's text.
  size_t size = 0;
};

// In the file's order; takes time in proportion to its size.
std::vector<NotRead> FindNotRead(const bag::KeptText& file);

}  // namespace vndoc6
