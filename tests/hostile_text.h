// Random texts made of what is most likely to confuse whoever escapes or parses a bag's text.
#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "vndoc6/automation/text.h"

namespace vndoc6::testing {

using Random = std::mt19937;  // the same sequence everywhere, unlike the distributions

inline size_t Below(Random& random, size_t end) { return random() % end; }

// UTF-16: pieces of the bag's grammar, surrogates in and out of pairs, NUL, any other unit.
inline Text HostileText(Random& random, size_t most_pieces = 8) {
  static const std::vector<Text> pieces = {u"=~64\"",
                                           u"=~64",
                                           u"\":",
                                           u"\"",
                                           u":",
                                           u"=",
                                           u"^",
                                           u"^-",
                                           u"^a",
                                           u"^b",
                                           u"^i",
                                           u"^A",
                                           u"^I",
                                           u"^j",
                                           u"^r",
                                           u"^J",
                                           u"^R",
                                           u"^z",
                                           u"^zo10;",
                                           u"^zc9",
                                           u"^zq",
                                           u"^zi0;",
                                           u"^zo010;",
                                           u"^zc999999;",
                                           u";",
                                           u"a",
                                           u"A",
                                           u"K=~64\"x\":",
                                           u"^zq18446744073709551615;",
                                           u"^zi999999999999999999;"};
  Text text;
  for (size_t left = Below(random, most_pieces + 1); left > 0; --left) {
    switch (Below(random, 8)) {
      case 0:
        text += static_cast<char16_t>(random());
        break;
      case 1:
        text += static_cast<char16_t>(0xD800 + Below(random, 0x800));
        break;
      case 2:
        text += static_cast<char16_t>(Below(random, 0x80));
        break;
      default:
        text += pieces[Below(random, pieces.size())];
    }
  }
  return text;
}

// Bytes that need not be UTF-8.
inline std::string HostileBytes(Random& random) {
  std::string bytes = automation::ToUtf8(HostileText(random));
  if (!bytes.empty() && Below(random, 2) == 0) {
    bytes[Below(random, bytes.size())] = static_cast<char>(random());
  }
  return bytes;
}

}  // namespace vndoc6::testing
