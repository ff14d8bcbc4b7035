#include "walk.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "automation/enumerator.h"
#include "automation/late_bound.h"

namespace vndoc {

using vndoc6::automation::CallKind;
using vndoc6::automation::TypeKind;

namespace {

struct LeftOut {
  std::string_view class_name;  // empty: whatever class has such a member
  std::string_view member;
};

// What leads up, to another document, or to what no file keeps.
constexpr LeftOut kLeftOut[] = {
    {"", "Document"},                // up
    {"", "Step"},                    // up
    {"", "Link"},                    // up
    {"", "Container"},               // up, by key: ContainerKey is walked
    {"", "Items"},                   // up
    {"", "IsStep"},                  // follows from where the figure is
    {"", "Database"},                // the host's
    {"vnDocument", "FileName"},      // where it was loaded from
    {"vnDocument", "Titles"},        // the title handler's
    {"vnDocument", "ChangeEvents"},  // of the moment, as the following ones
    {"vnDocument", "ChangeEventsLoading"},
    {"vnDocument", "AllowWrite"},
    {"vnDocument", "ExtensionCount"},
    {"vnDocument", "DocType"},           // DocumentType under other names
    {"vnDocument", "Edition"},           // not saved
    {"vnStep", "Links"},                 // a working list, not saved
    {"vnJump", "JumpDocument"},          // another document
    {"vnTitleRef", "DisplayNameCache"},  // DisplayName where there is no title handler
    {"Property", "TypeName"},            // follows from the value
};

// Properties with an index, and what counts their values.
struct Indexed {
  std::string_view member;
  std::string_view count;
};
constexpr Indexed kIndexed[] = {
    {"ExtraPointX", "ExtraPointCount"},
    {"ExtraPointY", "ExtraPointCount"},
};

bool IsLeftOut(const ClassInfo& info, const MemberInfo& member) {
  return std::any_of(std::begin(kLeftOut), std::end(kLeftOut), [&](const LeftOut& left_out) {
    return left_out.member == member.name &&
           (left_out.class_name.empty() || left_out.class_name == info.name());
  });
}

const MemberInfo* FindNamed(const ClassInfo& info, std::string_view name, CallKind kinds) {
  for (const MemberInfo& member : info.members()) {
    if (member.name == name && Allows(kinds, member.kind)) return &member;
  }
  return nullptr;
}

const MemberInfo* CountOf(const ClassInfo& info, const MemberInfo& member) {
  for (const Indexed& indexed : kIndexed) {
    if (indexed.member == member.name) return FindNamed(info, indexed.count, CallKind::kGet);
  }
  return nullptr;
}

WalkPlan MakePlan(const ClassInfo& info) {
  WalkPlan plan{info.Find(vndoc6::automation::kNewEnumMember, CallKind::kGet) != nullptr, {}};
  if (plan.is_collection) return plan;
  for (const MemberInfo& member : info.members()) {
    if (member.kind != CallKind::kGet || member.hidden || IsLeftOut(info, member)) continue;
    const MemberInfo* const count = CountOf(info, member);
    if (!member.parameters.empty() && count == nullptr) continue;
    plan.members.push_back(
        {&member, FindNamed(info, member.name, CallKind::kPut | CallKind::kPutRef), count});
  }
  return plan;
}

}  // namespace

const WalkPlan& PlanOf(const ClassInfo& info) {
  static std::map<const ClassInfo*, WalkPlan> plans;
  const auto found = plans.find(&info);
  return found != plans.end() ? found->second : plans.emplace(&info, MakePlan(info)).first->second;
}

Variant GetMember(Object& object, const MemberInfo& member) {
  return object.InvokeMember(member.id, CallKind::kGet, {});
}

void ForEachIn(Object& collection, const std::function<void(Object&)>& use) {
  const auto members = vndoc6::automation::Enumerate(collection);
  Ref<Object> member;
  while (members->Next(member)) use(*member);
}

}  // namespace vndoc
