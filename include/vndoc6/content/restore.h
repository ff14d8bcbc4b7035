// Restore: fills a new object with what was read of another one, as Walk tells it. Imports are told
// from their files, one value after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"
#include "vndoc6/content/content.h"

namespace vndoc6 {

// What hosts can't assign is restored too: keys, the document's GUID and counter, revisions,
// references to titles that no handler knows. What follows from the rest is passed over. Members
// that are not told keep the value that a new object has.
//
// While it stands, the document reports nothing. Steps and links are kept as text as soon as they
// are whole, so that a document of any size takes little more than its own text; what a save would
// not keep of them is gone.
class Restore {
 public:
  // Of a new document, as a rule, or any other new object.
  explicit Restore(automation::Object& object);

  // What is told next, up to its End, lies in a part of the object that is open: a member of
  // ContentOf its class that has a part.
  void Begin(const ContentMember& part);
  // It lies in a new member, the last so far, of the collection that is open.
  void BeginMember();
  void End();

  // A value of the object that is open. `index` is the number of a value in a row of them. Raises
  // what a put of that value raises.
  void Value(const ContentMember& member, const automation::Variant& value, int32_t index = 0);

  // All was told. Steps' files and jumps are the document's too, if its own were not told.
  void Finish();

 private:
  // The object is taken or made when something is told of it: empty parts need not be built.
  struct Open {
    automation::Ref<automation::Object> object;
    const automation::MemberInfo* part = nullptr;
    bool is_member = false;
  };
  automation::Object& Current();
  void AddMember(automation::Object& member);
  automation::Ref<automation::Object> AsKept(automation::Object& member);
  template <class T>
  automation::Ref<automation::Object> Unread(T& object);

  QuietReading quiet_;
  std::vector<Open> open_;
  std::string text_;      // of the member that was last kept
  size_t kept_size_ = 0;  // of all of them
  bool has_files_ = false;
  bool has_jumps_ = false;
};

}  // namespace vndoc6
