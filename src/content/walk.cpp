#include "vndoc6/content/walk.h"

#include "automation/inside.h"
#include "vndoc6/core/member.h"
#include "vndoc6/document/document.h"

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
      const PassingRead reading(*member.object);
      Visit(member.key, *member.object);
    }
    visitor_.OnMembersEnd(collection);
  }

  ContentVisitor& visitor_;
  ContentReader reader_;
};

}  // namespace

PassingRead::PassingRead(automation::Object& object) : object_(&object) {
  auto* const member = dynamic_cast<Member*>(&object);
  if (member == nullptr) return;
  go_back_ = Inside::RememberUnread(*member);
  const automation::Ref<vnDocument> document = go_back_ ? member->Document() : nullptr;
  if (document && document->ChangeEvents()) quiet_.emplace(*document);
}

PassingRead::~PassingRead() {
  if (go_back_) go_back_();
}

void Walk(automation::Object& object, ContentVisitor& visitor) {
  const QuietReading quiet(object);
  Walker(visitor).Visit({}, object);
}

}  // namespace vndoc6
