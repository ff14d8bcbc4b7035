// Members by path: Steps/3/Label, Details/Title, Steps/ItemByStepIndex(2)/Tasks/Count.
//
// A part is a member's name in any letter case, with arguments in brackets where it takes some. On
// a collection it may also be a position or a key; a key that looks like a number is written
// Item("3"). A part in double quotes may hold slashes and brackets; "" is a quote there.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "objects.h"

namespace vndoc {

struct PathPart {
  std::string name;                    // a member, a position or a key
  std::vector<std::string> arguments;  // as they were written
  bool quoted = false;                 // a key, whatever it looks like
};

std::vector<PathPart> ParsePath(std::string_view path);  // Failure when it is none

// What a path leads to: a member of an object.
struct Place {
  Ref<Object> object;
  PathPart member;
};
// Follows all parts but the last. Throws Failure when a part leads to no object.
Place FindPlace(const Ref<Object>& root, std::string_view path);

Variant GetAt(const Ref<Object>& root, const Place& place);
// A value as text becomes what the member takes: a name of its enumeration, "@" and a path to an
// object, "@" and a file for a picture, "Nothing"; else the text itself, converted as automation
// does. Where the member takes any value, 3 is a Long, 3.5 a Double, True a Boolean, "3" a text.
void SetAt(const Ref<Object>& root, const Place& place, const std::string& value);
Variant CallAt(const Ref<Object>& root, const Place& place, std::span<const std::string> values);

}  // namespace vndoc
