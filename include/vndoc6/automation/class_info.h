// ClassInfo: what is published of a class, as data. Late-bound calls, the COM interfaces, the
// interface definition and the type library are all derived from it and from nothing else.
// A class writes its rows with the functions in schema/rows.h.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6::automation {

// A class or interface identifier.
struct Guid {
  uint32_t data1;
  uint16_t data2, data3;
  uint8_t data4[8];
  friend bool operator==(const Guid&, const Guid&) = default;
};

// Dispatch identifiers that are fixed for every class.
inline constexpr int32_t kDefaultMember = 0;  // Item
inline constexpr int32_t kNewEnumMember = -4;
inline constexpr int32_t kNoMember = -1;

// How a member is called. A caller may allow several: scripts send get and call together.
enum class CallKind : uint8_t { kCall = 1, kGet = 2, kPut = 4, kPutRef = 8 };
constexpr CallKind operator|(CallKind left, CallKind right) {
  return static_cast<CallKind>(static_cast<uint8_t>(left) | static_cast<uint8_t>(right));
}
constexpr bool Allows(CallKind allowed, CallKind kind) {
  return (static_cast<uint8_t>(allowed) & static_cast<uint8_t>(kind)) != 0;
}

struct NamedArgument {
  int32_t parameter;  // position of the parameter, 0 = first
  Variant value;
};

// Arguments of a late-bound call, in the order of the parameters. A put's new value is the last of
// the positional ones. A left-out argument is kMissing or not there at all.
struct Arguments {
  std::span<const Variant> positional;
  std::span<const NamedArgument> named;
  // So many of the positional ones, from the first on, are variables of the caller's to an object
  // that tells them from values. What it does to them is not read back.
  size_t by_reference = 0;
};

// A published enumeration. Values and names leave the process: never change one.
struct EnumValue {
  const char* name;
  int32_t value;
};
struct EnumInfo {
  const char* name;
  Guid id;
  const char* help;
  std::span<const EnumValue> values;
};
// A C++ enumeration's table: each published one specialises this beside its definition.
template <class E>
const EnumInfo& DescribeEnum();

// The type of a parameter or result.
enum class TypeKind : uint8_t {
  kVoid,
  kBoolean,
  kShort,
  kLong,
  kSingle,
  kDouble,
  kCurrency,
  kDate,
  kText,
  kVariant,
  kEnum,      // a Long with named values: enumeration()
  kClass,     // an object of a described class: class_info()
  kDispatch,  // any object
  kFont,
  kPicture,
  kEnumerator
};
struct TypeInfo {
  TypeKind kind = TypeKind::kVoid;
  const ClassInfo& (*class_info)() = nullptr;
  const EnumInfo& (*enumeration)() = nullptr;
};

struct ParameterInfo {
  const char* name = nullptr;
  TypeInfo type;
  bool optional = false;
  Variant default_value;      // for an optional one
  bool by_reference = false;  // a Variant that the caller passes by reference
};

class Enumerator;

// Calls a member of the object with one Variant for each parameter, defaults filled in. Raises
// ArgumentError when an argument can't be converted.
using MemberThunk = Variant (*)(Object& object, const Variant* arguments);

struct MemberInfo {
  const char* name = nullptr;
  int32_t id = 0;
  CallKind kind = CallKind::kCall;
  bool hidden = false;
  TypeInfo result;
  std::vector<ParameterInfo> parameters;  // of a put: the new value is the last one
  const char* not_content = nullptr;      // why a host's reading of it is no content; null if it is
  // Of a row of values: the numbers that an object has values under.
  std::vector<int32_t> (*numbers)(const Object& object) = nullptr;
  const ClassInfo& (*part)() = nullptr;  // the part that it gives, where its type does not show it
  // How a new object gets the value that another had, where no put does that: what can only be
  // read, or is put with consequences.
  std::function<void(Object& object, const Variant& value)> restore;
  MemberThunk thunk = nullptr;
  const void* vtable_entry = nullptr;  // of the dual interface; null where there is none
};

class ClassInfo {
 public:
  ClassInfo(const char* name, const char* help, Guid class_id, Guid interface_id,
            Ref<Object> (*create)(), std::vector<MemberInfo> members);

  std::string_view name() const { return name_; }
  const char* help() const { return help_; }
  const Guid& class_id() const { return class_id_; }
  const Guid& interface_id() const { return interface_id_; }
  // A new object of the class, as a host creates one.
  Ref<Object> Create() const { return create_(); }
  // In slot order.
  std::span<const MemberInfo> members() const { return members_; }

  // The dispatch identifier of a name in any letter case; kNoMember when there is none.
  int32_t FindMember(TextView name) const;
  // The first member with that identifier that may be called so; null when there is none.
  const MemberInfo* Find(int32_t id, CallKind allowed) const {
    // Identifiers below the lowest become positions beyond the end.
    const size_t position = static_cast<uint32_t>(id) - static_cast<uint32_t>(kLowestId);
    const auto kinds = static_cast<size_t>(allowed);
    if (position >= by_id_.size() || kinds >= kKindSets) return nullptr;
    const int16_t found = by_id_[position][kinds];
    return found >= 0 ? &members_[static_cast<size_t>(found)] : nullptr;
  }

  // A late-bound call. Raises BindingError 438 for an unknown member or one that can't be called
  // so, 450 for too many arguments, 449 for a missing one, 448 for an unknown named one,
  // ArgumentError (13 or 6) for one that can't be converted, and whatever the member itself raises.
  // Surplus arguments of a get belong to the default member of the object it gives: doc.Steps(1).
  Variant Invoke(Object& object, int32_t id, CallKind allowed, const Arguments& arguments) const;

 private:
  static constexpr int32_t kLowestId = kNewEnumMember;
  static constexpr size_t kKindSets = 16;

  void IndexNames();
  void IndexIds();
  // A call whose arguments have to be brought in order first.
  static Variant InvokeBound(Object& object, const MemberInfo& member, const Arguments& arguments);

  const char* name_;
  const char* help_;
  Guid class_id_;
  Guid interface_id_;
  Ref<Object> (*create_)();
  std::vector<MemberInfo> members_;
  std::vector<int16_t> name_slots_;  // open addressing; member position or -1
  // For each identifier and each set of kinds that a caller may allow: the first member in slot
  // order that it finds; -1 for none.
  std::vector<std::array<int16_t, kKindSets>> by_id_;
};

}  // namespace vndoc6::automation
