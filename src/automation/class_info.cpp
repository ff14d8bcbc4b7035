#include "vndoc6/automation/class_info.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "vndoc6/automation/error.h"

namespace vndoc6::automation {
namespace {

constexpr size_t kInlineArguments = 8;

char FoldedAscii(char unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<char>(unit + ('a' - 'A')) : unit;
}

// FNV-1a over the lower-case letters; 0 for a name that is not ASCII and so no member's.
template <class Unit>
uint32_t HashName(std::basic_string_view<Unit> name) {
  uint32_t hash = 2166136261u;
  for (const Unit unit : name) {
    if (static_cast<char32_t>(unit) >= 0x80) return 0;
    hash = (hash ^ static_cast<uint8_t>(FoldedAscii(static_cast<char>(unit)))) * 16777619u;
  }
  return hash;
}

// Whether the arguments are one for each parameter already, as nearly every call's are.
bool FitsAsGiven(const MemberInfo& member, const Arguments& arguments) {
  if (arguments.positional.size() != member.parameters.size() || !arguments.named.empty()) {
    return false;
  }
  for (const Variant& value : arguments.positional) {
    if (value.IsMissing()) return false;
  }
  return true;
}

// The arguments of one call, one for each parameter. Nearly every member has few enough
// parameters for no allocation.
class BoundArguments {
 public:
  BoundArguments(const MemberInfo& member, const Arguments& given, size_t positional_count)
      : member_(member) {
    const size_t count = member.parameters.size();
    if (count > inline_.size()) overflow_.resize(count);
    values_ = count > inline_.size() ? overflow_.data() : inline_.data();
    Bind(given, positional_count);
  }
  const Variant* values() const { return values_; }

 private:
  void Bind(const Arguments& given, size_t positional_count) {
    const size_t count = member_.parameters.size();
    for (const NamedArgument& named : given.named) {
      if (named.parameter < 0 || static_cast<size_t>(named.parameter) >= count) {
        throw BindingError(kNamedArgumentNotFound);
      }
    }
    for (size_t i = 0; i < count; ++i) {
      const Variant* positional = Positional(given, positional_count, i);
      const bool present = positional != nullptr && !positional->IsMissing();
      values_[i] = present ? *positional : NamedOrDefault(given, static_cast<int32_t>(i));
    }
  }

  // The positional argument for parameter `index`, if there is one. A put's new value is the
  // caller's last argument and the last parameter, whatever index before it was left out.
  const Variant* Positional(const Arguments& given, size_t count, size_t index) const {
    const bool put = member_.kind == CallKind::kPut || member_.kind == CallKind::kPutRef;
    if (put && count > 0) {
      if (index + 1 == member_.parameters.size()) return &given.positional[count - 1];
      --count;
    }
    return index < count ? &given.positional[index] : nullptr;
  }

  Variant NamedOrDefault(const Arguments& given, int32_t index) const {
    for (const NamedArgument& named : given.named) {
      if (named.parameter == index && !named.value.IsMissing()) return named.value;
    }
    const ParameterInfo& parameter = member_.parameters[static_cast<size_t>(index)];
    if (!parameter.optional) throw ArgumentError(kArgumentNotOptional, index);
    return parameter.default_value;
  }

  const MemberInfo& member_;
  Variant* values_;
  std::array<Variant, kInlineArguments> inline_;
  std::vector<Variant> overflow_;
};

// Whether surplus arguments may go on to the default member of what the member gives.
bool MayForwardSurplus(const MemberInfo& member) {
  const TypeKind kind = member.result.kind;
  return member.kind == CallKind::kGet &&
         (kind == TypeKind::kClass || kind == TypeKind::kDispatch || kind == TypeKind::kVariant);
}

}  // namespace

ClassInfo::ClassInfo(const char* name, const char* help, Guid class_id, Guid interface_id,
                     Ref<Object> (*create)(), std::vector<MemberInfo> members)
    : name_(name),
      help_(help),
      class_id_(class_id),
      interface_id_(interface_id),
      create_(create),
      members_(std::move(members)) {
  IndexNames();
  IndexIds();
}

void ClassInfo::IndexNames() {
  size_t size = 8;
  while (size < members_.size() * 2) size *= 2;
  name_slots_.assign(size, -1);
  for (size_t i = 0; i < members_.size(); ++i) {
    const std::string_view name = members_[i].name;
    for (size_t slot = HashName(name) & (size - 1);; slot = (slot + 1) & (size - 1)) {
      if (name_slots_[slot] < 0) {
        name_slots_[slot] = static_cast<int16_t>(i);
        break;
      }
      if (members_[static_cast<size_t>(name_slots_[slot])].name == name) break;
    }
  }
}

void ClassInfo::IndexIds() {
  int32_t highest = kLowestId;
  for (const MemberInfo& member : members_) highest = std::max(highest, member.id);
  by_id_.resize(static_cast<size_t>(int64_t{highest} - kLowestId + 1));
  for (auto& members : by_id_) members.fill(-1);
  for (size_t i = 0; i < members_.size(); ++i) {
    auto& members = by_id_[static_cast<size_t>(members_[i].id - kLowestId)];
    for (size_t kinds = 0; kinds < kKindSets; ++kinds) {
      if (members[kinds] < 0 && Allows(static_cast<CallKind>(kinds), members_[i].kind)) {
        members[kinds] = static_cast<int16_t>(i);
      }
    }
  }
}

int32_t ClassInfo::FindMember(TextView name) const {
  const size_t mask = name_slots_.size() - 1;
  for (size_t slot = HashName(name) & mask;; slot = (slot + 1) & mask) {
    if (name_slots_[slot] < 0) return kNoMember;
    const MemberInfo& member = members_[static_cast<size_t>(name_slots_[slot])];
    if (EqualsAsciiFolded(member.name, name)) return member.id;
  }
}

Variant ClassInfo::Invoke(Object& object, int32_t id, CallKind allowed,
                          const Arguments& arguments) const {
  const MemberInfo* member = Find(id, allowed);
  if (member == nullptr) throw BindingError(kNotSupported);
  if (FitsAsGiven(*member, arguments)) return member->thunk(object, arguments.positional.data());
  return InvokeBound(object, *member, arguments);
}

Variant ClassInfo::InvokeBound(Object& object, const MemberInfo& member,
                               const Arguments& arguments) {
  const size_t given = arguments.positional.size();
  const size_t taken = std::min(given, member.parameters.size());
  if (given > taken && !MayForwardSurplus(member)) throw BindingError(kWrongArgumentCount);
  const BoundArguments bound(member, arguments, taken);
  const Variant result = member.thunk(object, bound.values());
  if (given == taken) return result;
  const Ref<Object>& target = result.ToObject();
  if (!target) throw Error(kObjectNotSet);
  return target->InvokeMember(kDefaultMember, CallKind::kGet | CallKind::kCall,
                              {arguments.positional.subspan(taken), {}});
}

}  // namespace vndoc6::automation
