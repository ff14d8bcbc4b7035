// Field tables: the many plain properties of a figure, a line or the chart, each told once.
//
// A class keeps these properties in a struct of its own, `Values`, and lists them in the order of
// its saved text:
//
//     constexpr std::tuple kFields{
//         row(&Values::alignment, "A", 7, vndAlignment),
//         row(&Values::auto_size, "AS", 0, vndAutoSize), ...
//     };
//
// Saving, loading and reporting changes read that list. What does not fit the pattern stands in
// the class as code.
#pragma once

#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "automation/text.h"
#include "automation/variant.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"

namespace vndoc6 {

template <class Values, class T>
struct Field {
  using Default = std::conditional_t<std::is_same_v<T, Text>, TextView, T>;

  T Values::*member;
  const char* key;       // in every saved text: never change one
  Default missing;       // the value of a text without the key
  int32_t detail_id;     // what a change reports
  const char* load_key;  // as `key`, or where the two differ; null: the text's value is not read

  constexpr Field LoadedFrom(const char* other_key) const {
    Field field = *this;
    field.load_key = other_key;
    return field;
  }
  constexpr Field NeverLoaded() const { return LoadedFrom(nullptr); }
};

template <class Values, class T>
constexpr Field<Values, T> row(T Values::*member, const char* key,
                               typename Field<Values, T>::Default missing, int32_t detail_id) {
  return {member, key, missing, detail_id, key};
}

namespace detail {

template <class T>
void WriteValue(bag::BagWriter& writer, std::string_view key, const T& value) {
  if constexpr (std::is_enum_v<T>) {
    writer.Add(key, static_cast<int32_t>(value));
  } else {
    writer.Add(key, value);
  }
}

template <class T, class Default>
T ReadValue(bag::BagReader& reader, std::string_view key, Default missing) {
  if constexpr (std::is_enum_v<T>) {
    return static_cast<T>(reader.GetLong(key, static_cast<int32_t>(missing)));
  } else if constexpr (std::is_same_v<T, int32_t>) {
    return reader.GetLong(key, missing);
  } else if constexpr (std::is_same_v<T, bool>) {
    return reader.GetBoolean(key, missing);
  } else if constexpr (std::is_same_v<T, float>) {
    return reader.GetSingle(key, missing);
  } else if constexpr (std::is_same_v<T, automation::Currency>) {
    return reader.GetCurrency(key, missing);
  } else {
    static_assert(std::is_same_v<T, Text>, "no form in a saved text");
    return reader.GetText(key, missing);
  }
}

}  // namespace detail

template <class... Fields, class Values>
void WriteFields(bag::BagWriter& writer, const std::tuple<Fields...>& fields,
                 const Values& values) {
  const auto write = [&](const auto& field) {
    detail::WriteValue(writer, field.key, values.*field.member);
  };
  std::apply([&](const auto&... field) { (write(field), ...); }, fields);
}

template <class... Fields, class Values>
void ReadFields(bag::BagReader& reader, const std::tuple<Fields...>& fields, Values& values) {
  const auto read = [&](const auto& field) {
    using T = std::remove_cvref_t<decltype(values.*field.member)>;
    if (field.load_key == nullptr) return;
    values.*field.member = detail::ReadValue<T>(reader, field.load_key, field.missing);
  };
  std::apply([&](const auto&... field) { (read(field), ...); }, fields);
}

// What a change of the member reports; it must have a row.
template <class... Fields, class Values, class T>
int32_t DetailIdOf(const std::tuple<Fields...>& fields, T Values::*member) {
  int32_t detail_id = 0;
  const auto look_at = [&](const auto& field) {
    if constexpr (std::is_same_v<T Values::*, decltype(field.member)>) {
      if (field.member == member) detail_id = field.detail_id;
    }
  };
  std::apply([&](const auto&... field) { (look_at(field), ...); }, fields);
  return detail_id;
}

}  // namespace vndoc6
