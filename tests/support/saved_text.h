// The serialised text of any object or collection, also of those that hosts can't save on their
// own, and back.
#pragma once

#include <string>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::testing {

// In UTF-8, as it lies in a file.
template <class T>
std::string SavedText(T& object) {
  return automation::ToUtf8(
      bag::BagTextOf([&](bag::BagWriter& writer) { Inside::Write(object, writer); }));
}

inline bag::KeptText Kept(std::string_view saved) {
  return bag::KeptText(automation::FromUtf8(saved));
}

// Keys that a host may think of: what the text form itself is made of, line ends, other scripts,
// and a lone surrogate.
inline const Text kHostileKeys[] = {
    u"\"", u":",           u"=~64\"\":", u"^a^A^", u"a\r\nb\n",       u"=",
    u" ",  Text(1, u'\0'), u"Straße",    u"日本",  Text(1, u'\xD800')};

}  // namespace vndoc6::testing
