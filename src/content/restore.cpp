#include "vndoc6/content/restore.h"

#include <span>
#include <string_view>
#include <utility>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/content/walk.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {
namespace {

using automation::CallKind;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::Object;
using automation::Ref;
using automation::TypeKind;
using automation::Variant;

constexpr CallKind kPuts = CallKind::kPut | CallKind::kPutRef;

// Of a host's object what is known is its text.
bool PutText(Object& object, const MemberInfo& member, const Variant& text) {
  if (member.result.kind != TypeKind::kDispatch || !text.IsText()) return false;
  // A new one has none.
  if (text.ToText().empty()) return true;
  const Ref<Object> foreign = object.InvokeMember(member.id, CallKind::kGet, {}).ToObject();
  if (!foreign) return false;
  automation::Put(*foreign, u"Text", {text});
  return true;
}

}  // namespace

Restore::Restore(Object& object) : quiet_(object) { open_.push_back({&object}); }

void Restore::Begin(const ContentMember& part) {
  if (open_.size() == 1) {
    has_files_ = has_files_ || part.part == &vnFiles::classInfo();
    has_jumps_ = has_jumps_ || part.part == &vnJumps::classInfo();
  }
  open_.push_back({nullptr, part.member, false});
}

void Restore::BeginMember() {
  const ClassInfo* const info = MemberClassOf(*Current().GetClassInfo());
  if (info == nullptr) throw automation::Error(automation::kNotSupported);
  open_.push_back({info->Create(), nullptr, true});
}

void Restore::End() {
  const Open closed = std::move(open_.back());
  open_.pop_back();
  if (closed.is_member) AddMember(*closed.object);
}

Object& Restore::Current() {
  // The first object is there.
  size_t at = open_.size() - 1;
  while (!open_[at].object) --at;
  for (; at + 1 < open_.size(); ++at) {
    Open& below = open_[at + 1];
    below.object = open_[at].object->InvokeMember(below.part->id, CallKind::kGet, {}).ToObject();
  }
  return *open_.back().object;
}

// The same object, kept as text.
template <class T>
Ref<Object> Restore::Unread(T& object) {
  text_.clear();
  bag::BagWriter writer(text_);
  Inside::Write(object, writer);
  kept_size_ += text_.size();
  auto unread = automation::Make<T>();
  Inside::Read(*unread, bag::KeptText(bag::SharedBytes(text_)), object.Key());
  return unread;
}

Ref<Object> Restore::AsKept(Object& member) {
  if (auto* const step = dynamic_cast<vnStep*>(&member)) return Unread(*step);
  if (auto* const link = dynamic_cast<vnLink*>(&member)) return Unread(*link);
  return &member;
}

void Restore::AddMember(Object& member) {
  Object& collection = Current();
  const ClassInfo& info = *collection.GetClassInfo();
  const MemberInfo* const add = info.Find(info.FindMember(u"Add"), CallKind::kCall);
  if (add == nullptr) throw automation::Error(automation::kNotSupported);
  const Variant added(AsKept(member));
  if (add->restore) {
    add->restore(collection, added);
  } else {
    collection.InvokeMember(add->id, CallKind::kCall, {{&added, 1}, {}});
  }
}

void Restore::Value(const ContentMember& content, const Variant& value, int32_t index) {
  const MemberInfo& member = *content.member;
  Object& object = Current();
  if (PutText(object, member, value)) return;
  if (member.restore) return member.restore(object, value);
  const MemberInfo* const put = object.GetClassInfo()->Find(member.id, kPuts);
  if (put == nullptr || (value.IsEmpty() && put->kind == CallKind::kPutRef)) return;
  const Variant arguments[] = {Variant(index), value};
  const size_t first = put->parameters.size() == 1 ? 1 : 0;
  object.InvokeMember(put->id, kPuts, {std::span(arguments).subspan(first), {}});
}

void Restore::Finish() {
  auto* const document = dynamic_cast<vnDocument*>(open_.front().object.get());
  if (document == nullptr) return;
  Inside::ExpectSize(*document, kept_size_);
  if (has_files_ && has_jumps_) return;
  const Ref<vnSteps> steps = document->Steps();
  for (int32_t i = 1; i <= steps->Count(); ++i) {
    const Ref<vnStep> step = steps->Item(Variant(i));
    const PassingRead reading(*step);
    // Building them adds them to the document's.
    if (!has_files_) step->Files();
    if (!has_jumps_) step->Jumps();
  }
}

}  // namespace vndoc6
