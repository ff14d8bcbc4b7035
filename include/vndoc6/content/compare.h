// Compare: what differs between two documents, and where.
#pragma once

#include <string>
#include <vector>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6 {

struct CompareOptions {
  // Leaves out what tells one document from another, or one state of it from the next, and is
  // never equal for that reason: GUID and IR.
  bool ignore_identity = false;
};

struct Difference {
  enum class Kind {
    kValue,      // a property reads differently
    kOnlyLeft,   // an object that is not in the right document
    kOnlyRight,  // an object that is not in the left document
    kOrder,      // the members that both collections have come in another order
  };

  Kind kind = Kind::kValue;
  // From the first object to the one that differs: "Steps/{key}/Figure". The members of collections
  // stand in braces with their key; '\', '/', '{' and '}' in a key stand behind a '\'. Those
  // without a key stand as "#" and their position. Empty for the first object itself.
  Text object;
  std::string class_name;
  // The property of kValue: "Left", "ExtraPointX(3)"; of an entry that this version does not know
  // its key, "[Later]". Empty for the other kinds.
  Text property;
  // The values of kValue, Empty where there is none. For kOrder the positions, from 1, of the first
  // member that is out of order.
  automation::Variant left;
  automation::Variant right;
};

// What a host would find different by reading both documents whole, in the order in which it would
// find it. Values are different when their kinds are; pictures are compared by their bytes, fonts
// by their values, property bags entry by entry, and a host's own objects by their Text. Members of
// collections are paired by their keys, exactly; members that have no keys, or the same, in their
// order; entries that this version does not know (unknown_entries.h) are compared as well. What a
// running host adds to a document is no difference: content.h tells what that is.
//
// Two objects of a document, or of two documents, can be compared as well, of one class as a rule:
// if their classes differ, that is the one difference.
//
// Nothing is reported to listeners, and ChangeEvents is as it was afterwards. The members of
// collections stay as unread as they were, see PassingRead in walk.h.
std::vector<Difference> Compare(automation::Object& left, automation::Object& right,
                                const CompareOptions& options = {});

// A difference in a line: "Steps/{key}/Figure/Left: 15 | 20", "+ Steps/{key}", "- Steps/{key}",
// "Steps/{key}: position 1 | 3".
Text DescribeDifference(const Difference& difference);

}  // namespace vndoc6
