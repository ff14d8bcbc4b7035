#include "content/content.h"

#include <span>

#include "automation/enumerator.h"
#include "automation/error.h"
#include "automation/font.h"
#include "automation/late_bound.h"
#include "chart/line.h"
#include "process/container.h"

namespace vndoc6 {

using automation::CallKind;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::Object;
using automation::Ref;
using automation::TypeKind;
using automation::Variant;

namespace {

constexpr std::string_view kEveryClass = "*";

// What a host can read that is no content.
struct LeftOut {
  std::string_view class_name;
  std::string_view member;
  const char* reason;
};
constexpr LeftOut kLeftOut[] = {
    {kEveryClass, "Document", "leads back to the root"},
    {kEveryClass, "Step", "leads back to the owner"},
    {kEveryClass, "Link", "leads back to the owner"},
    {kEveryClass, "Container", "leads back to the owner"},
    {kEveryClass, "TemplateLibrary", "leads back to the root"},
    {"vnTitle", "Titles", "leads back to the owner"},
    {"vnItem", "Items", "leads back to the owner"},
    {"vnTemplate", "Templates", "leads back to the owner"},
    {"vnFigure", "IsStep", "what the owner is"},
    {kEveryClass, "NewEnum", "the members themselves are read"},
    {kEveryClass, "Count", "the members themselves are read"},
    {"Properties", "IsEmpty", "the entries themselves are read"},
    {"Properties", "Text", "the entries themselves are read"},
    {"Property", "TypeName", "follows from the value"},
    {"vnSteps", "LastIndex", "follows from the steps"},
    {"vnTemplate", "TagProcessorValue", "follows from Value"},
    {"vnDocument", "DocType", "another name of DocumentType"},
    {"vnStep", "Links", "a working list of what stands in the document's links"},
    {"vnDocument", "Titles", "the title handler's list, not the document's"},
    {"vnJump", "JumpDocument", "another document; FileName tells which"},
    {kEveryClass, "Database", "the host's connection"},
    {"vnDocument", "FileVersion", "tells of the last load"},
    {"vnDocument", "AllowWrite", "the host's access"},
    {kEveryClass, "ChangeEvents", "a setting of the host's"},
    {kEveryClass, "ChangeEventsLoading", "a setting of the host's"},
    {"vnDocument", "FileName", "where the document lies"},
    {"vnTemplateLibrary", "FileName", "where the library lies"},
    {"vnLine", "UpdateExtraPoints", "a setting of the host's"},
};

// Properties that are rows of values, and which of those are read. Their number alone is no
// measure: a file may say what it likes.
struct IndexedMember {
  std::string_view class_name;
  std::string_view member;
  std::vector<int32_t> (*numbers)(const Object& object);
};
std::vector<int32_t> PointNumbers(const Object& line) {
  return static_cast<const vnLine&>(line).InternalPointNumbers();
}
constexpr IndexedMember kIndexed[] = {
    {"vnLine", "ExtraPointX", &PointNumbers},
    {"vnLine", "ExtraPointY", &PointNumbers},
};

// Parts that the published types do not show.
struct HiddenPart {
  std::string_view class_name;
  std::string_view member;
  const ClassInfo& (*part)();
};
constexpr HiddenPart kHiddenParts[] = {
    {"vnDocument", "Containers", &vnContainers::classInfo},
};

// What the members of collections are known by, in this order of preference.
constexpr TextView kKeyMembers[] = {u"Key", u"Ref", u"ID", u"IR"};

template <class Row>
bool Names(const Row& row, std::string_view class_name, std::string_view member) {
  return (row.class_name == class_name || row.class_name == kEveryClass) && row.member == member;
}
template <class Row, size_t kCount>
const Row* FindRow(const Row (&rows)[kCount], std::string_view class_name,
                   std::string_view member) {
  for (const Row& row : rows) {
    if (Names(row, class_name, member)) return &row;
  }
  return nullptr;
}

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

}  // namespace

std::vector<ContentMember> ContentOf(const ClassInfo& info) {
  std::vector<ContentMember> content;
  for (const MemberInfo& member : info.members()) {
    const std::string_view name = member.name;
    if (member.kind != CallKind::kGet) continue;
    if (FindRow(kLeftOut, info.name(), name) != nullptr) continue;
    // What takes arguments is a look-up of what is read anyway, unless it is a row of values.
    const bool indexed = FindRow(kIndexed, info.name(), name) != nullptr;
    if (!member.parameters.empty() && !indexed) continue;
    const ClassInfo* part = nullptr;
    if (const auto* hidden = FindRow(kHiddenParts, info.name(), name)) {
      part = &hidden->part();
    } else if (member.result.kind == TypeKind::kFont) {
      part = &automation::Font::classInfo();
    } else if (member.result.kind == TypeKind::kClass) {
      part = &member.result.class_info();
    }
    content.push_back({&member, part});
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
    const auto* indexed = FindRow(kIndexed, info.name(), member->name);
    rows.push_back({member, part != nullptr, indexed != nullptr ? indexed->numbers : nullptr});
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
