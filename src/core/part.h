// Parts: objects that belong to another one and are built when somebody reads them first.
#pragma once

#include <type_traits>

#include "automation/inside.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/bag/lazy.h"
#include "vndoc6/core/member.h"

namespace vndoc6 {

// A new T that knows its document and whose part it is.
template <class T, class Owner>
automation::Ref<T> MakePart(Owner& owner) {
  const auto part = automation::Make<T>();
  if constexpr (std::is_base_of_v<Member, Owner>) {
    Inside::TakeDocument(*part, Inside::document(owner));
  } else {
    Inside::TakeDocument(*part, &owner);
  }
  if constexpr (requires { part->SetStep(&owner); }) part->SetStep(&owner);
  if constexpr (requires { part->SetLink(&owner); }) part->SetLink(&owner);
  if constexpr (requires { part->SetContainer(&owner); }) part->SetContainer(&owner);
  return part;
}

// The part, built from its kept text on the first read. The document's own lists are built without
// a report: what they hold was in the document already. A step's report what they hold.
template <class T, class Owner>
automation::Ref<T> ReadPart(bag::Lazy<T>& part, Owner& owner) {
  if (T* const built = part.built()) return built;
  // Building it is reported; a handler may let go of its owner.
  const automation::Ref<Owner> self(&owner);
  return part.Get([&] { return MakePart<T>(owner); },
                  [](T& object, const bag::KeptText& text) {
                    constexpr bool kIsDocuments = !std::is_base_of_v<Member, Owner>;
                    if constexpr (kIsDocuments && requires { Inside::ReadQuietly(object, text); }) {
                      Inside::ReadQuietly(object, text);
                    } else if constexpr (requires { Inside::Read(object, text); }) {
                      Inside::Read(object, text);
                    } else {
                      Inside::Read(object, text, Text());  // without a key from outside
                    }
                  });
}

}  // namespace vndoc6
