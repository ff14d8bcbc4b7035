// ContentReader: the content of an object, read as a host reads it: by name, through the member
// tables. No class has code here; a new member of a class is read as soon as its table has it.
//
// Content is what a host can read, without what is the same thing seen from elsewhere (the way
// back to the owner) and without what belongs to the running host and not to the object (the file's
// name, the opened target of a jump). The row of each such member says why.
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vndoc6/automation/class_info.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6 {

// One property of an object as it reads.
struct Content {
  std::string_view name;  // as published
  size_t position = 0;    // of the property among those of its class
  // In a property that is a row of values: "ExtraPointX" 3; else 0. Values that are left out of a
  // row are 0.
  int32_t index = 0;
  // A value, a picture, or the object that the property gives (Nothing where there is none). What
  // a host sees as an error is an ErrorValue here.
  automation::Variant value;
  // The value is an object of the library's to read on in. Any other object is taken whole.
  bool is_part = false;
};

// A member of a collection, with what it is known by there: its key, number or reference. Empty
// where the class has nothing of the kind.
struct ListMember {
  Text key;
  automation::Ref<automation::Object> object;
};

// Reading does what a host's reading does: it builds parts that are kept as text. The parts form a
// tree whatever the objects refer to: no walk over them meets an object inside itself.
class ContentReader {
 public:
  // The object's own content, in published order; of an object without a member table none.
  std::vector<Content> Read(automation::Object& object);
  static bool IsCollection(const automation::Object& object);
  // The members of a collection, in order.
  static std::vector<ListMember> Members(automation::Object& object);

 private:
  struct Row {
    const automation::MemberInfo* member;
    bool is_part;
    // Which values of a row are read; null for a single one.
    std::vector<int32_t> (*numbers)(const automation::Object& object);
  };
  using Rows = std::vector<Row>;
  static Rows RowsOf(const automation::ClassInfo& info);
  const Rows& KnownRowsOf(const automation::ClassInfo& info);

  std::unordered_map<const automation::ClassInfo*, Rows> known_;
};

// Whether a class's member is content of its objects, and the part below them that it gives; null
// for none. What there is to read of a class, without an object of it.
struct ContentMember {
  const automation::MemberInfo* member;
  const automation::ClassInfo* part;
};
std::vector<ContentMember> ContentOf(const automation::ClassInfo& info);
// The class of a collection's members; null for a class that is no collection.
const automation::ClassInfo* MemberClassOf(const automation::ClassInfo& info);

// Keeps the document that an object belongs to from reporting changes while it is read: reading
// builds parts, and some properties report being read.
class QuietReading {
 public:
  explicit QuietReading(automation::Object& object);
  ~QuietReading();
  QuietReading(const QuietReading&) = delete;
  QuietReading& operator=(const QuietReading&) = delete;

 private:
  automation::Ref<automation::Object> document_;
  automation::Variant change_events_;
};

}  // namespace vndoc6
