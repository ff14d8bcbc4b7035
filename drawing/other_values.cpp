#include "other_values.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/content/content.h"

namespace vndoc6::drawing {
namespace {

using automation::ClassInfo;
using automation::MemberInfo;
using automation::Object;
using automation::Ref;
using automation::TypeKind;
using automation::Variant;

// What accounts have words for, in any class, and what is no part of a process: keys, where a
// document lies, how a host reaches its database and how it shows the chart.
constexpr std::array kTold = {
    "AuthorisedBy",
    "ConditionExpression",
    "ConditionTest",
    "ConnectionString",
    "ContainerKey",
    "DateApproved",
    "Dependancies",
    "Description",
    "DestinationStepKey",
    "DisplayName",
    "DisplayNameCache",
    "DocType",
    "DocumentCode",
    "DocumentVersion",
    "Duration",
    "DBGUID",
    "Edition",
    "ExtensionCount",
    "FailMessage",
    "FileName",
    "FileVersion",
    "Form",
    "GUID",
    "Instructions",
    "IR",
    "Key",
    "Label",
    "Name",
    "Notes",
    "OriginStepKey",
    "PagesCount",
    "Purpose",
    "Reason",
    "Ref",
    "Revision",
    "RevisionDate",
    "Scope",
    "ShowPageBreaks",
    "StepIndex",
    "TaskOrder",
    "Text",
    "Title",
};

bool IsOther(const ContentMember& content) {
  const MemberInfo& member = *content.member;
  if (!member.parameters.empty() || member.hidden) return false;
  if (std::find(kTold.begin(), kTold.end(), std::string_view(member.name)) != kTold.end()) {
    return false;
  }
  if (content.part != nullptr) {
    return content.part == &Properties::classInfo() || member.name == std::string_view("Fields");
  }
  return member.result.kind != TypeKind::kPicture && member.result.kind != TypeKind::kFont;
}

// Null and errors have no text; their kind says it.
Text Plain(const Variant& value) {
  const automation::ValueKind kind = value.kind();
  const bool has_text = kind != automation::ValueKind::kNull &&
                        kind != automation::ValueKind::kError &&
                        kind != automation::ValueKind::kOpaque;
  return has_text ? value.ToText() : automation::FromUtf8(value.TypeName());
}

void AddEntries(Properties& bag, const std::string& path, std::vector<OtherValue>& values) {
  for (int32_t i = 1; i <= bag.Count(); ++i) {
    const Ref<Property> entry = bag.Item(Variant(i));
    const std::string name = path + "/" + automation::ToUtf8(entry->Key());
    const Ref<Object> object = entry->Object();
    values.push_back({name, object ? entry->ValueTypeName() : Plain(entry->Value())});
  }
}

Variant Read(const MemberInfo& member, Object& object) { return member.thunk(object, nullptr); }

// Of a value, or of what keeps a text.
Text TextOf(const Variant& value) {
  if (!value.IsObject()) return Plain(value);
  const Ref<Object>& object = value.ToObject();
  return object ? automation::Get(*object, u"Text").ToText() : Text();
}

}  // namespace

const std::vector<OtherValues::Row>& OtherValues::RowsOf(const ClassInfo& info) {
  const auto [known, is_new] = known_.try_emplace(&info);
  if (!is_new) return known->second;
  const Ref<Object> usual = info.Create();
  for (const ContentMember& content : ContentOf(info)) {
    if (!IsOther(content)) continue;
    const bool is_bag = content.part == &Properties::classInfo();
    known->second.push_back(
        {content.member, is_bag ? Text() : TextOf(Read(*content.member, *usual))});
  }
  return known->second;
}

std::vector<OtherValue> OtherValues::Of(Object& object) {
  std::vector<OtherValue> values;
  for (const Row& row : RowsOf(*object.GetClassInfo())) {
    const Variant value = Read(*row.member, object);
    if (value.IsObject()) {
      if (auto* const bag = dynamic_cast<Properties*>(value.ToObject().get())) {
        AddEntries(*bag, row.member->name, values);
        continue;
      }
    }
    Text text = TextOf(value);
    if (text != row.usual) values.push_back({row.member->name, std::move(text)});
  }
  return values;
}

}  // namespace vndoc6::drawing
