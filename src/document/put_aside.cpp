#include "document/put_aside.h"

#include <string>

#include "platform/file_system.h"

namespace vndoc6 {

// Whoever has made the empty file has the name, and may replace what is in it.
bool PutAside(const Text& file) {
  constexpr int kMost = 10000;
  for (int number = 1; number <= kMost; ++number) {
    const Text aside = file + Text(kAsideEnding) + automation::FromUtf8(std::to_string(number));
    switch (platform::MakeEmptyFile(aside)) {
      case platform::Made::kYes:
        if (platform::CopyFileTo(file, aside)) return true;
        platform::DeleteFileNamed(aside);
        return false;
      case platform::Made::kNameIsTaken:
        break;
      case platform::Made::kNo:
        return false;
    }
  }
  return false;
}

}  // namespace vndoc6
