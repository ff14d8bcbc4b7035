// A class's rows as the saved text of its objects: writing it, reading it, copying it unread, and
// copying values from object to object.
//
// `Schema` is the class's struct of rows. `Schema::kFileOrder`, where there is one, lists the keys
// in the order of the file; elsewhere that is the order of the rows. `self` is the object, `values`
// the struct in which its fields lie; a row's field is in one of the two.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/lazy_text.h"
#include "bag/unchanged_text.h"
#include "platform/keys.h"
#include "schema/rows.h"
#include "vndoc6/bag/lazy.h"
#include "vndoc6/bag/unknown_entries.h"

namespace vndoc6::schema {

namespace detail {

template <class Row>
constexpr bool kHasEntry = !std::is_same_v<std::remove_cvref_t<decltype(Row::entry)>, NoEntry>;
template <class T>
struct IsOwnEntry : std::false_type {};
template <class Class>
struct IsOwnEntry<OwnEntry<Class>> : std::true_type {};
template <class Row>
constexpr bool kHasField =
    kHasEntry<Row> && !IsOwnEntry<std::remove_cvref_t<decltype(Row::entry)>>::value;
// What keeps the entries that a text has beside those of the rows: the object, or the values that
// it is built from. Neither for values that share the text of an object.
template <class Self, class Values>
auto* CarrierIn(Self& self, Values& values) {
  if constexpr (std::is_base_of_v<bag::Carrier, Values>) {
    return &Inside::unknown_entries(values);
  } else if constexpr (std::is_base_of_v<bag::Carrier, Self>) {
    return &Inside::unknown_entries(self);
  } else {
    return static_cast<bag::UnknownEntries*>(nullptr);
  }
}
template <class T>
struct IsPart : std::false_type {};
template <class T>
struct IsPart<bag::Lazy<T>> : std::true_type {};

template <class Schema>
using RowsOf = std::remove_cvref_t<decltype(Schema::kRows)>;
template <class Schema>
constexpr size_t kRowCount = std::tuple_size_v<RowsOf<Schema>>;
template <class Schema, size_t kIndex>
using RowAt = std::tuple_element_t<kIndex, RowsOf<Schema>>;

// Each row's key; empty for one without an entry.
template <class Schema>
constexpr auto Keys() {
  const auto key_of = []<class Row>(const Row& row) -> std::string_view {
    if constexpr (kHasEntry<Row>) {
      return row.entry.key;
    } else {
      return {};
    }
  };
  return std::apply(
      [&](const auto&... row) {
        return std::array<std::string_view, sizeof...(row)>{key_of(row)...};
      },
      Schema::kRows);
}

// The positions of the rows with an entry, in the order of the file. Does not compile when the
// listed order misses a key or names one that no row has.
template <class Schema>
consteval auto FileOrder() {
  constexpr auto kKeys = Keys<Schema>();
  constexpr size_t kCount = [&] {
    size_t count = 0;
    for (const std::string_view key : kKeys) count += key.empty() ? 0 : 1;
    return count;
  }();
  std::array<size_t, kCount> order{};
  if constexpr (requires { Schema::kFileOrder; }) {
    static_assert(std::size(Schema::kFileOrder) == kCount, "the file's order lists every key once");
    for (size_t i = 0; i < kCount; ++i) {
      size_t row = 0;
      while (kKeys[row] != Schema::kFileOrder[i]) ++row;
      order[i] = row;
    }
  } else {
    size_t next = 0;
    for (size_t row = 0; row < kKeys.size(); ++row) {
      if (!kKeys[row].empty()) order[next++] = row;
    }
  }
  return order;
}

// Calls `visit(row)` for each row with an entry, in the order of the file.
template <class Schema, class Visit>
void ForEachEntry(Visit&& visit) {
  static constexpr auto kOrder = FileOrder<Schema>();
  [&]<size_t... kIndex>(std::index_sequence<kIndex...>) {
    (visit(std::get<kOrder[kIndex]>(Schema::kRows)), ...);
  }
  (std::make_index_sequence<kOrder.size()>());
}

// Where a field lies.
template <class Self, class Values, class Owner, class T>
auto& Place(Self& self, Values& values, T Owner::*member) {
  if constexpr (std::is_base_of_v<Owner, std::remove_const_t<Values>>) {
    return values.*member;
  } else {
    return self.*member;
  }
}

template <class T>
void WriteValue(bag::BagWriter& writer, std::string_view key, const T& value) {
  if constexpr (std::is_enum_v<T>) {
    writer.Add(key, static_cast<int32_t>(value));
  } else {
    writer.Add(key, value);
  }
}
template <class T>
void WriteValue(bag::BagWriter& writer, std::string_view key, const bag::Lazy<T>& part) {
  bag::WriteLazy(writer, key, part);
}

inline bool IsThere(const Text& value) { return !value.empty(); }
template <class T>
requires std::is_arithmetic_v<T>
bool IsThere(T value) { return value != 0; }
template <class T>
requires requires(const T& bag) { bag.IsEmpty(); }
bool IsThere(const bag::Lazy<T>& bag) { return bag.built() != nullptr && !bag.built()->IsEmpty(); }

template <class T, class Missing>
T ReadValue(bag::BagReader& reader, std::string_view key, const Missing& missing) {
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
  } else if constexpr (std::is_same_v<T, automation::Date>) {
    return reader.GetDate(key, missing);
  } else {
    static_assert(std::is_same_v<T, Text>, "no form in a saved text");
    return reader.GetText(key, missing);
  }
}

template <class Row, class Self, class Values>
void ReadField(bag::BagReader& reader, const Row& row, Self& self, Values& values) {
  const auto& entry = row.entry;
  auto& value = Place(self, values, entry.member);
  using T = std::remove_cvref_t<decltype(value)>;
  if constexpr (IsPart<T>::value) {
    value.Reset(reader.GetKept(entry.read_key));
  } else if (entry.Is(kMissingKeeps)) {
    value = ReadValue<T>(reader, entry.read_key, T(value));
  } else if (entry.Is(kReadByPut)) {
    if constexpr (std::tuple_size_v<decltype(row.calls)> == 2) {
      using Put = std::tuple_element_t<1, decltype(row.calls)>;
      (self.*Put::kMember)(ReadValue<T>(reader, entry.read_key, entry.missing));
    }
  } else {
    value = ReadValue<T>(reader, entry.read_key, entry.missing);
  }
}

template <class Member>
struct TypeOfMember;
template <class Owner, class T>
struct TypeOfMember<T Owner::*> {
  using Type = T;
};

// The tag of a value in the text, as UnchangedEntries has it.
template <class T>
constexpr char TagOf() {
  if constexpr (std::is_same_v<T, bool>) {
    return 'b';
  } else if constexpr (std::is_enum_v<T> || std::is_same_v<T, int32_t>) {
    return '0';
  } else if constexpr (std::is_same_v<T, float>) {
    return 's';
  } else if constexpr (std::is_same_v<T, automation::Date>) {
    return 't';
  } else {
    static_assert(std::is_same_v<T, Text> || IsPart<T>::value);
    return '"';
  }
}

}  // namespace detail

// Writes the entries of the rows.
template <class Schema, class Self, class Values>
void WriteRows(bag::BagWriter& writer, Self& self, Values& values) {
  detail::ForEachEntry<Schema>([&]<class Row>(const Row& row) {
    const auto& entry = row.entry;
    if constexpr (detail::kHasField<Row>) {
      const auto& value = detail::Place(self, values, entry.member);
      if (entry.Is(kOnlyWhenThere)) {
        if constexpr (requires { detail::IsThere(value); }) {
          if (!detail::IsThere(value)) return;
        }
      }
      if constexpr (std::is_same_v<decltype(value), const Text&>) {
        if (entry.Is(kFreshWhenEmpty) && value.empty()) {
          writer.Add(entry.key, platform::NewKey());
          return;
        }
      }
      detail::WriteValue(writer, entry.key, value);
    } else {
      (self.*entry.write)(writer);
    }
  });
}

// Writes every entry: behind those of the rows what the text had beside them.
template <class Schema, class Self, class Values>
void WriteEntries(bag::BagWriter& writer, Self& self, Values& values) {
  WriteRows<Schema>(writer, self, values);
  if (const auto* unknown = detail::CarrierIn(self, values)) unknown->Write(writer);
}

// Whether another reader has read what is read at once.
enum class AtOnce { kReadHere, kReadElsewhere };

// Reads every entry, but those that are read at once, and takes the unknown ones over.
template <class Schema, AtOnce kAtOnce = AtOnce::kReadHere, class Self, class Values>
void ReadEntries(bag::BagReader& reader, Self& self, Values& values) {
  detail::ForEachEntry<Schema>([&]<class Row>(const Row& row) {
    if constexpr (detail::kHasField<Row>) {
      const bool at_once = row.entry.Is(kReadAtOnce);
      if (at_once ? kAtOnce == AtOnce::kReadElsewhere : row.entry.read_key != row.entry.key) {
        reader.Skip(row.entry.key);
      }
      if (row.entry.read_key == nullptr || at_once) return;
      detail::ReadField(reader, row, self, values);
    } else {
      (self.*row.entry.read)(reader);
    }
  });
  if (auto* unknown = detail::CarrierIn(self, values)) unknown->TakeFrom(reader);
}

// Reads the entries that are read at once; a `key` that is not empty takes the identity's place.
template <class Schema, class Self, class Values>
void ReadAtOnce(bag::BagReader& reader, Self& self, Values& values, const Text& key) {
  detail::ForEachEntry<Schema>([&]<class Row>(const Row& row) {
    if constexpr (detail::kHasField<Row>) {
      if (!row.entry.Is(kReadAtOnce)) return;
      auto& value = detail::Place(self, values, row.entry.member);
      if (row.entry.read_key != row.entry.key) reader.Skip(row.entry.key);
      if constexpr (std::is_same_v<decltype(value), Text&>) {
        if (row.entry.Is(kIdentity) && !key.empty()) {
          reader.Skip(row.entry.read_key);
          value = key;
          return;
        }
      }
      detail::ReadField(reader, row, self, values);
    }
  });
}

// Reads a whole object.
template <class Schema, class Self, class Values>
void ReadObject(const bag::KeptText& text, Self& self, Values& values, const Text& key) {
  bag::BagReader reader(text);
  ReadAtOnce<Schema>(reader, self, values, key);
  ReadEntries<Schema>(reader, self, values);
}

// Copies the text of an object that nobody read, if that is what writing it would give: every entry
// in its place, those that were read at once as they are in the object.
template <class Schema, class Self>
bool CopyUnread(const bag::KeptText& text, bag::BagWriter& writer, const Self& self) {
  bag::UnchangedEntries entries(text);
  bool unchanged = true;
  detail::ForEachEntry<Schema>([&]<class Row>(const Row& row) {
    if constexpr (detail::kHasField<Row>) {
      using T = typename detail::TypeOfMember<decltype(row.entry.member)>::Type;
      if (!unchanged || row.entry.Is(kOnlyWhenThere)) return;
      unchanged = entries.Next(row.entry.key, detail::TagOf<T>());
      if constexpr (requires { automation::Variant(self.*row.entry.member); }) {
        if (!row.entry.Is(kReadAtOnce)) return;
        unchanged = unchanged && entries.ValueIs(automation::Variant(self.*row.entry.member));
      }
    }
  });
  return unchanged && entries.CopyTo(writer);
}

// Copies the plain values; parts and identities are the class's business.
template <class Schema, class Values>
void CopyValues(const Values& from, Values& to) {
  detail::ForEachEntry<Schema>([&]<class Row>(const Row& row) {
    if constexpr (detail::kHasField<Row>) {
      const auto copy = [&]<class Owner, class T>(T Owner::*member) {
        if constexpr (std::is_base_of_v<Owner, Values> && !detail::IsPart<T>::value) {
          if (!row.entry.Is(kIdentity)) to.*member = from.*member;
        }
      };
      copy(row.entry.member);
    }
  });
}

// Calls `visit(part)` for each part, built or not, in the order of the rows.
template <class Schema, class Values, class Visit>
void ForEachPart(Values& values, Visit&& visit) {
  const auto look_at = [&]<class Row>(const Row& row) {
    if constexpr (detail::kHasField<Row>) {
      const auto visit_part = [&]<class Owner, class T>(T Owner::*member) {
        if constexpr (detail::IsPart<T>::value) visit(values.*member);
      };
      visit_part(row.entry.member);
    }
  };
  std::apply([&](const auto&... row) { (look_at(row), ...); }, Schema::kRows);
}

// Whether nobody outside holds a part.
template <class Schema, class Values>
bool HoldsNoPart(Values& values) {
  bool held = false;
  ForEachPart<Schema>(values, [&held](auto& part) {
    held = held || (part.built() != nullptr && part.built()->IsHeld());
  });
  return !held;
}

// Remembers which parts are text now. What it gives makes them that text again, but for those that
// somebody outside holds.
template <class Schema, class Values>
std::function<void()> RememberUnreadParts(Values& values) {
  std::vector<std::optional<bag::KeptText>> texts;
  ForEachPart<Schema>(values, [&texts](auto& part) {
    texts.push_back(part.built() == nullptr ? std::optional(part.text()) : std::nullopt);
  });
  return [&values, texts = std::move(texts)]() mutable {
    auto text = texts.begin();
    ForEachPart<Schema>(values, [&text](auto& part) {
      const bool is_read = *text && part.built() != nullptr && !part.built()->IsHeld();
      if (is_read) part.Reset(*std::move(*text));
      ++text;
    });
  };
}

// Stores what a put gives. What is to be reported then, as the field's row says; 0 for nothing.
template <class Schema, class Values, class Owner, class T>
int32_t Store(Values& values, T Owner::*member, const T& value) {
  int32_t detail_id = 0;
  bool only_when_changed = false;
  const auto look_at = [&]<class Row>(const Row& row) {
    if constexpr (detail::kHasField<Row>) {
      if constexpr (std::is_same_v<T Owner::*, decltype(row.entry.member)>) {
        if (row.entry.member != member) return;
        detail_id = row.facts.detail_id;
        only_when_changed = row.facts.when == kWhenChanged;
      }
    }
  };
  std::apply([&](const auto&... row) { (look_at(row), ...); }, Schema::kRows);
  if (only_when_changed && values.*member == value) return 0;
  values.*member = value;
  return detail_id;
}

}  // namespace vndoc6::schema
