#include "vndoc6/content/content.h"

#include <span>

#include "vndoc6/automation/enumerator.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/font.h"
#include "vndoc6/automation/late_bound.h"

namespace vndoc6 {

using automation::CallKind;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::Object;
using automation::Ref;
using automation::TypeKind;
using automation::Variant;

namespace {

// What the members of collections are known by, in this order of preference.
constexpr TextView kKeyMembers[] = {u"Key", u"Ref", u"ID", u"IR"};

// Of an object that a host may have supplied the library knows one thing only: its text.
bool IsForeign(TypeKind kind) { return kind == TypeKind::kDispatch; }

Variant ErrorSeenByHosts(const automation::Error& error) {
  constexpr int32_t kAutomationErrors = static_cast<int32_t>(0x800A0000);
  return Variant(automation::ErrorValue{kAutomationErrors + error.number()});
}

// A host's object stands for the text it gives.
Variant TextOfForeign(const Variant& value) {
  if (!value.IsObject() || !value.ToObject()) return value;
  Object& object = *value.ToObject();
  if (object.FindMember(u"Text") == automation::kNoMember) return value;
  return automation::Get(object, u"Text");
}

Variant ReadMember(Object& object, const MemberInfo& member, std::span<const Variant> arguments) {
  try {
    const Variant value = object.InvokeMember(member.id, CallKind::kGet, {arguments, {}});
    return IsForeign(member.result.kind) ? TextOfForeign(value) : value;
  } catch (const automation::Error& error) {
    return ErrorSeenByHosts(error);
  }
}

// The class of the part that a member gives; null for none.
const ClassInfo* PartOf(const MemberInfo& member) {
  if (member.part != nullptr) return &member.part();
  if (member.result.kind == TypeKind::kFont) return &automation::Font::classInfo();
  return member.result.kind == TypeKind::kClass ? &member.result.class_info() : nullptr;
}

}  // namespace

std::vector<ContentMember> ContentOf(const ClassInfo& info) {
  std::vector<ContentMember> content;
  for (const MemberInfo& member : info.members()) {
    if (member.kind != CallKind::kGet || member.not_content != nullptr) continue;
    // What takes arguments is a look-up of what is read anyway, unless it is a row of values.
    if (!member.parameters.empty() && member.numbers == nullptr) continue;
    content.push_back({&member, PartOf(member)});
  }
  return content;
}

const ClassInfo* MemberClassOf(const ClassInfo& info) {
  if (info.Find(automation::kNewEnumMember, CallKind::kGet) == nullptr) return nullptr;
  const MemberInfo* item = info.Find(automation::kDefaultMember, CallKind::kGet);
  if (item == nullptr || item->result.kind != TypeKind::kClass) return nullptr;
  return &item->result.class_info();
}

ContentReader::Rows ContentReader::RowsOf(const ClassInfo& info) {
  Rows rows;
  for (const auto& [member, part] : ContentOf(info)) {
    rows.push_back({member, part != nullptr, member->numbers});
  }
  return rows;
}

const ContentReader::Rows& ContentReader::KnownRowsOf(const ClassInfo& info) {
  const auto known = known_.find(&info);
  return known != known_.end() ? known->second : known_.emplace(&info, RowsOf(info)).first->second;
}

std::vector<Content> ContentReader::Read(Object& object) {
  std::vector<Content> content;
  const ClassInfo* info = object.GetClassInfo();
  if (info == nullptr) return content;
  const Rows& rows = KnownRowsOf(*info);
  content.reserve(rows.size());
  for (size_t position = 0; position < rows.size(); ++position) {
    const auto& [member, is_part, numbers] = rows[position];
    if (numbers == nullptr) {
      Variant value = ReadMember(object, *member, {});
      const bool is_object = value.IsObject() && value.ToObject();
      content.push_back({member->name, position, 0, std::move(value), is_part && is_object});
      continue;
    }
    for (const int32_t number : numbers(object)) {
      const Variant index(number);
      content.push_back(
          {member->name, position, number, ReadMember(object, *member, {&index, 1}), false});
    }
  }
  return content;
}

bool ContentReader::IsCollection(const Object& object) {
  const ClassInfo* info = object.GetClassInfo();
  return info != nullptr && MemberClassOf(*info) != nullptr;
}

std::vector<ListMember> ContentReader::Members(Object& object) {
  std::vector<ListMember> members;
  const Ref<automation::Enumerator> walk = automation::Enumerate(object);
  for (Ref<Object> member; walk->Next(member);) {
    Text key;
    for (const TextView name : kKeyMembers) {
      if (member->FindMember(name) == automation::kNoMember) continue;
      key = automation::Get(*member, name).ToText();
      break;
    }
    members.push_back({std::move(key), member});
  }
  return members;
}

QuietReading::QuietReading(Object& object) {
  constexpr TextView kSwitch = u"ChangeEvents";
  if (object.FindMember(kSwitch) != automation::kNoMember) {
    document_ = &object;
  } else if (object.FindMember(u"Document") != automation::kNoMember) {
    document_ = automation::Get(object, u"Document").ToObject();
  }
  if (!document_) return;
  change_events_ = automation::Get(*document_, kSwitch);
  automation::Put(*document_, kSwitch, {Variant(false)});
}

QuietReading::~QuietReading() {
  if (document_) automation::Put(*document_, u"ChangeEvents", {change_events_});
}

}  // namespace vndoc6
