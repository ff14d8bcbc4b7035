// Writing what is kept as text until somebody reads it.
#pragma once

#include <string_view>
#include <type_traits>
#include <utility>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/lazy.h"

namespace vndoc6::bag {

// Writes the built object's text by `write(object, writer)`, or the kept one.
template <class T, class Write>
void WriteLazy(BagWriter& writer, std::string_view key, const Lazy<T>& lazy, Write&& write) {
  if (T* const object = lazy.built()) {
    writer.AddNested(key, [&](BagWriter& nested) { write(*object, nested); });
  } else {
    writer.Add(key, lazy.text());
  }
}

// The same as the object writes itself. Of an object that a host may have supplied the library
// knows one thing only: its property Text.
template <class T>
void WriteLazy(BagWriter& writer, std::string_view key, const Lazy<T>& lazy) {
  if constexpr (std::is_same_v<T, automation::Object>) {
    if (T* const object = lazy.built()) {
      writer.Add(key, automation::Get(*object, u"Text").ToText());
    } else {
      writer.Add(key, lazy.text());
    }
  } else {
    WriteLazy(writer, key, lazy,
              [](T& object, BagWriter& nested) { Inside::Write(object, nested); });
  }
}

}  // namespace vndoc6::bag
