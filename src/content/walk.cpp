#include "vndoc6/content/walk.h"

namespace vndoc6 {
namespace {

class Walker {
 public:
  explicit Walker(ContentVisitor& visitor) : visitor_(visitor) {}

  void Visit(TextView name, automation::Object& object) {
    visitor_.OnObjectBegin(name, object);
    for (const Content& content : reader_.Read(object)) {
      if (content.is_part) {
        Visit(automation::FromUtf8(content.name), *content.value.ToObject());
      } else {
        visitor_.OnValue(content);
      }
    }
    if (ContentReader::IsCollection(object)) VisitMembers(object);
    visitor_.OnObjectEnd(object);
  }

 private:
  void VisitMembers(automation::Object& collection) {
    const std::vector<ListMember> members = ContentReader::Members(collection);
    visitor_.OnMembersBegin(collection, members.size());
    for (const ListMember& member : members) {
      const automation::Ref<automation::Object> object = visitor_.ObjectToVisit(*member.object);
      Visit(member.key, *object);
    }
    visitor_.OnMembersEnd(collection);
  }

  ContentVisitor& visitor_;
  ContentReader reader_;
};

}  // namespace

void Walk(automation::Object& object, ContentVisitor& visitor) {
  const QuietReading quiet(object);
  Walker(visitor).Visit({}, object);
}

}  // namespace vndoc6
