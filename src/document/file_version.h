// The versions of the document file. In every file: a changed meaning of a key needs a new one.
#pragma once

#include <cstdint>

namespace vndoc6 {

inline constexpr int32_t kFileVersion = 2;
inline constexpr float kDocumentVersion = 1.2f;

}  // namespace vndoc6
