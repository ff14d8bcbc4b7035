// A bag that belongs to another object: kept as text until it is read, and held together with its
// owner once a host holds it.
#pragma once

#include "automation/inside.h"
#include "vndoc6/bag/lazy.h"
#include "vndoc6/bag/properties.h"

namespace vndoc6::bag {

inline automation::Ref<Properties> BagPart(Lazy<Properties>& part, automation::Object* owner) {
  const auto make = [owner] {
    auto bag = automation::Make<Properties>();
    Inside::StoreOwner(*bag, owner);
    return bag;
  };
  return part.Get(make, [](Properties& bag, const KeptText& text) { Inside::Read(bag, text); });
}

inline void SetBagPart(Lazy<Properties>& part, Properties* bag, automation::Object* owner) {
  if (Properties* previous = part.built()) Inside::StoreOwner(*previous, nullptr);
  part.Set(bag);
  if (bag != nullptr) Inside::StoreOwner(*bag, owner);
}

}  // namespace vndoc6::bag
