// How a class says what is known of its members: one row each, in the order of the slots.
//
// clang-format off
//
//     struct vnTask::Schema {
//       static constexpr std::tuple kRows{
//           property<&vnTask::Document, &vnTask::SetDocument>("Document", "poDocument").not_content("leads back to the root"),
//           property<&vnTask::Key>("Key").identity(&vnTask::key_, "K"),
//           property<&vnTask::Name, &vnTask::SetName>("Name", "psName").field(&Values::name, "N"),
//           property<&vnTask::TaskType, &vnTask::SetTaskType>("TaskType", "plTaskType").field(&Values::task_type, "TT").reports(vndTaskType, kAlways),
//           method<&vnTask::Load>("Load", "psLoad", optional("psKey", u"")),
//       };
//     };
//
//     const ClassInfo& vnTask::classInfo() {
//       static const ClassInfo info = describe<vnTask>("vnTask", "One unit of work.", {clsid}, {iid}, Schema::kRows);
//       return info;
//     }
//
// clang-format on
//
// Types come from the C++ signatures; names, parameters and their defaults from the row; so do the
// key in the saved text, what a put reports, and whether the member is content. Late-bound calls,
// the slots of the dual interface, the interface definition, the type library, the reference, the
// saved text out and in (bag/row_text.h), copies and comparison all read these rows.
//
// `Item` gets dispatch identifier 0 and `NewEnum` -4 (hidden); every other name is numbered from 1
// in the order of its first row, the same for its get, put and putref. Rows must therefore never be
// reordered, nor one inserted before others that are published. Keys are in every file: never
// change one.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "automation/vtable_entry.h"
#include "schema/signature.h"
#include "vndoc6/automation/text.h"

namespace vndoc6::bag {
class BagReader;
class BagWriter;
template <class T>
class Lazy;
}  // namespace vndoc6::bag

namespace vndoc6::schema {

using automation::CallKind;
using automation::ClassInfo;
using automation::Guid;
using automation::MemberInfo;

// --- Parameters ---

// A Variant parameter that the published interface takes by reference.
struct by_reference {
  const char* name;
};

// A parameter that a caller may leave out.
template <class T>
struct Optional {
  const char* name;
  T missing;
};
constexpr Optional<TextView> optional(const char* name, TextView missing) {
  return {name, missing};
}
constexpr Optional<int32_t> optional(const char* name, int32_t missing) { return {name, missing}; }

// --- Entries: where a property lies in the saved text ---

// A put reports its number on every put, or only when the value differs from the one before.
enum When : uint8_t { kAlways, kWhenChanged };

// How an entry departs from the rule that every save writes it and every load reads it.
enum Departure : uint8_t {
  kIdentity = 1,         // no value of its own: copies of the object do not get it
  kReadAtOnce = 2,       // known of an object before the rest of its text is read
  kMissingKeeps = 4,     // a text without the key leaves the value as it is
  kReadByPut = 8,        // read by the property's put, which reports it
  kOnlyWhenThere = 16,   // written only when there is something to write
  kFreshWhenEmpty = 32,  // written as a new key when it is empty
};

// What a value is when a text does not have it.
template <class T>
struct MissingOf {
  using Type = T;
};
template <>
struct MissingOf<Text> {
  using Type = TextView;
};
// Parts are empty then.
template <class T>
struct MissingOf<bag::Lazy<T>> {
  struct Type {};
};

template <class Owner, class T>
struct Entry {
  T Owner::*member;
  const char* key;
  const char* read_key;  // as `key`, or where the two differ; null: never read
  typename MissingOf<T>::Type missing{};
  uint8_t departures = 0;

  constexpr bool Is(Departure departure) const { return (departures & departure) != 0; }
};

// An entry, or several, that the class writes and reads with code of its own.
template <class Class>
struct OwnEntry {
  const char* key;
  void (Class::*write)(bag::BagWriter& writer);
  void (Class::*read)(bag::BagReader& reader);
};

struct NoEntry {};

// --- Rows ---

namespace detail {

inline automation::ParameterInfo ToParameter(const char* name) {
  return {name, {}, false, {}, false};
}
inline automation::ParameterInfo ToParameter(by_reference parameter) {
  return {parameter.name, {}, false, {}, true};
}
inline automation::ParameterInfo ToParameter(const Optional<TextView>& parameter) {
  return {parameter.name, {}, true, automation::Variant(Text(parameter.missing)), false};
}
inline automation::ParameterInfo ToParameter(const Optional<int32_t>& parameter) {
  return {parameter.name, {}, true, automation::Variant(parameter.missing), false};
}

template <class Member>
struct LastParameter;
template <class Class, class Result, class... Params>
struct LastParameter<Result (Class::*)(Params...)> {
  using Type = std::tuple_element_t<sizeof...(Params) - 1, std::tuple<Params...>>;
};

// One slot: a member function and how it is called.
template <CallKind kHow, auto kFunction, class... Names>
struct Call {
  static constexpr CallKind kKind = kHow;
  static constexpr auto kMember = kFunction;
  std::tuple<Names...> parameters;

  MemberInfo Info(const char* name) const {
    using Shape = automation::detail::Signature<decltype(kFunction)>;
    static_assert(sizeof...(Names) == Shape::kCount, "every parameter needs its published name");
    MemberInfo info;
    info.name = name;
    info.kind = kHow;
    info.result = Shape::ResultType();
    info.parameters = Shape::Parameters();
    [[maybe_unused]] size_t index = 0;
    [[maybe_unused]] const auto name_next = [&](automation::ParameterInfo named) {
      named.type = info.parameters[index].type;
      info.parameters[index++] = std::move(named);
    };
    std::apply([&](const auto&... named) { (name_next(ToParameter(named)), ...); }, parameters);
    info.thunk = &Shape::template Call<kFunction>;
    info.vtable_entry =
        automation::VtableEntry<kFunction, std::is_same_v<Names, by_reference>...>();
    return info;
  }
};

template <auto kFunction>
void CallWithValue(automation::Object& object, const automation::Variant& value) {
  automation::detail::Signature<decltype(kFunction)>::template Call<kFunction>(object, &value);
}

}  // namespace detail

// What of a row does not depend on types.
struct RowFacts {
  const char* name = nullptr;  // as published; null for an entry that hosts do not see
  int32_t detail_id = 0;       // what a put reports; 0 for nothing
  When when = kAlways;
  bool hidden = false;
  const char* not_content = nullptr;  // the reason why
  // Of a row of values: the numbers that an object has values under.
  std::vector<int32_t> (*numbers)(const automation::Object&) = nullptr;
  const ClassInfo& (*part)() = nullptr;
  void (*restore)(automation::Object& object, const automation::Variant& value) = nullptr;
};

template <class EntryType, class... Calls>
struct Row {
  RowFacts facts;
  std::tuple<Calls...> calls;
  EntryType entry;

  // The value lies there, and in the saved text under that key.
  template <class Owner, class T>
  constexpr auto field(T Owner::*member, const char* key) const {
    return With(Entry<Owner, T>{member, key, key});
  }
  // The object's key: a field that copies do not get, and that is known before the rest is read.
  template <class Owner, class T>
  constexpr auto identity(T Owner::*member, const char* key) const {
    return field(member, key).departs(kIdentity).departs(kReadAtOnce);
  }
  // The class writes and reads it by itself. `key` names it in the order of the file.
  template <class Class>
  constexpr auto own_entry(const char* key, void (Class::*write)(bag::BagWriter&),
                           void (Class::*read)(bag::BagReader&)) const {
    return With(OwnEntry<Class>{key, write, read});
  }

  // Of the field. What a text without the key stands for; zero, False or empty if not said.
  template <class T>
  constexpr Row missing(T value) const {
    Row row = *this;
    row.entry.missing = static_cast<decltype(row.entry.missing)>(value);
    return row;
  }
  constexpr Row read_as(const char* key) const {
    Row row = *this;
    row.entry.read_key = key;
    return row;
  }
  constexpr Row never_read() const { return read_as(nullptr); }
  constexpr Row departs(Departure departure) const {
    Row row = *this;
    row.entry.departures = static_cast<uint8_t>(row.entry.departures | departure);
    return row;
  }

  // Of the property. What a put reports as a change of its object.
  constexpr Row reports(int32_t detail_id, When when = kAlways) const {
    Row row = *this;
    row.facts.detail_id = detail_id;
    row.facts.when = when;
    return row;
  }
  // A member that object browsers don't show; callable like any other.
  constexpr Row hidden() const {
    Row row = *this;
    row.facts.hidden = true;
    return row;
  }
  // What a host can read that is no content of the object: not compared, not exported.
  constexpr Row not_content(const char* reason) const {
    Row row = *this;
    row.facts.not_content = reason;
    return row;
  }
  // A row of values; the function gives the numbers that an object has values under.
  constexpr Row numbered_by(std::vector<int32_t> (*numbers)(const automation::Object&)) const {
    Row row = *this;
    row.facts.numbers = numbers;
    return row;
  }
  // The class of the part that a property gives, where its published type does not show it.
  constexpr Row gives(const ClassInfo& (*part)()) const {
    Row row = *this;
    row.facts.part = part;
    return row;
  }
  // How a new object gets the value, where that is neither its put nor, for what can only be read,
  // its field. Of a collection's Add: how it gets a member that is whole.
  template <auto kFunction>
  constexpr Row restored_by() const {
    Row row = *this;
    row.facts.restore = &detail::CallWithValue<kFunction>;
    return row;
  }

 private:
  template <class NewEntry>
  constexpr Row<NewEntry, Calls...> With(NewEntry new_entry) const {
    return {facts, calls, new_entry};
  }
};

namespace detail {

template <CallKind kKind, auto kMember, class... Names>
constexpr auto SingleCallRow(const char* name, Names... names) {
  using OneCall = Call<kKind, kMember, Names...>;
  return Row<NoEntry, OneCall>{{name}, std::tuple<OneCall>{OneCall{{names...}}}, {}};
}

// The get takes all parameters but the last, which is the new value.
template <auto kGet, auto kPut, class... Names, size_t... kIndex>
constexpr auto GetAndPutRow(const char* name, const std::tuple<Names...>& names,
                            std::index_sequence<kIndex...>) {
  constexpr bool kIsObject = std::is_pointer_v<typename LastParameter<decltype(kPut)>::Type>;
  using Get = Call<CallKind::kGet, kGet, std::tuple_element_t<kIndex, std::tuple<Names...>>...>;
  using Put = Call<kIsObject ? CallKind::kPutRef : CallKind::kPut, kPut, Names...>;
  return Row<NoEntry, Get, Put>{
      {name}, std::tuple<Get, Put>{Get{{std::get<kIndex>(names)...}}, Put{names}}, {}};
}

}  // namespace detail

// A property that is read, or read and put, in adjacent slots; an object is put by reference. A
// put's parameter names end with the new value's.
template <auto kGet, class... Names>
constexpr auto property(const char* name, Names... names) {
  return detail::SingleCallRow<CallKind::kGet, kGet>(name, names...);
}
template <auto kGet, auto kPut, class... Names>
constexpr auto property(const char* name, Names... names) {
  return detail::GetAndPutRow<kGet, kPut>(name, std::tuple<Names...>{names...},
                                          std::make_index_sequence<sizeof...(Names) - 1>());
}
// A property whose put has a slot of its own elsewhere.
template <auto kPut, class... Names>
constexpr auto put(const char* name, Names... names) {
  return detail::SingleCallRow<CallKind::kPut, kPut>(name, names...);
}
template <auto kPutRef, class... Names>
constexpr auto putref(const char* name, Names... names) {
  return detail::SingleCallRow<CallKind::kPutRef, kPutRef>(name, names...);
}
template <auto kMethod, class... Names>
constexpr auto method(const char* name, Names... names) {
  return detail::SingleCallRow<CallKind::kCall, kMethod>(name, names...);
}
// A value in the saved text that hosts do not see.
template <class Owner, class T>
constexpr auto unpublished(T Owner::*member, const char* key) {
  return Row<NoEntry>{{nullptr}, {}, {}}.field(member, key);
}

// --- The class ---

namespace detail {

// Numbers the members as the comment at the top says.
void NumberMembers(std::vector<MemberInfo>& members);

// Puts a value where it lies, if it lies in the object itself.
template <class EntryType>
std::function<void(automation::Object&, const automation::Variant&)> StoreIn(const EntryType&) {
  return {};
}
template <class Owner, class T>
requires std::is_base_of_v<automation::Object, Owner> &&
    std::is_constructible_v<automation::Variant, T>
        std::function<void(automation::Object&, const automation::Variant&)> StoreIn(
            const Entry<Owner, T>& entry) {
  return [member = entry.member](automation::Object& object, const automation::Variant& value) {
    static_cast<Owner&>(object).*member = automation::detail::ConvertArgument<T>(value, 0).get();
  };
}

template <class EntryType, class... Calls>
void AppendMembers(const Row<EntryType, Calls...>& row, std::vector<MemberInfo>& members) {
  const auto append = [&](const auto& call) {
    MemberInfo info = call.Info(row.facts.name);
    info.hidden = row.facts.hidden;
    info.not_content = row.facts.not_content;
    info.numbers = row.facts.numbers;
    info.part = row.facts.part;
    if (row.facts.restore != nullptr) {
      info.restore = row.facts.restore;
    } else if constexpr (sizeof...(Calls) == 1) {
      info.restore = StoreIn(row.entry);
    }
    members.push_back(std::move(info));
  };
  std::apply([&](const auto&... call) { (append(call), ...); }, row.calls);
}

template <class T>
automation::Ref<automation::Object> CreateDefault() {
  return automation::Ref<automation::Object>(automation::Make<T>());
}

}  // namespace detail

// The members of a class, in slot order and numbered.
template <class... Rows>
std::vector<MemberInfo> MembersOf(const std::tuple<Rows...>& rows) {
  std::vector<MemberInfo> members;
  std::apply([&](const auto&... row) { (detail::AppendMembers(row, members), ...); }, rows);
  detail::NumberMembers(members);
  return members;
}

template <class T, class... Rows>
ClassInfo describe(const char* name, const char* help, Guid class_id, Guid interface_id,
                   const std::tuple<Rows...>& rows) {
  return ClassInfo(name, help, class_id, interface_id, &detail::CreateDefault<T>, MembersOf(rows));
}

}  // namespace vndoc6::schema
