// A bag that belongs to another object: kept as text until it is read, and held together with its
// owner once a host holds it.
#pragma once

#include "bag/lazy.h"
#include "bag/properties.h"

namespace vndoc6::bag {

inline automation::Ref<Properties> BagPart(Lazy<Properties>& part, automation::Object* owner) {
  const auto make = [owner] {
    auto bag = automation::Make<Properties>();
    bag->InternalSetOwner(owner);
    return bag;
  };
  return part.Get(make, [](Properties& bag, const KeptText& text) { bag.InternalLoad(text); });
}

inline void SetBagPart(Lazy<Properties>& part, Properties* bag, automation::Object* owner) {
  if (Properties* previous = part.built()) previous->InternalSetOwner(nullptr);
  part.Set(bag);
  if (bag != nullptr) bag->InternalSetOwner(owner);
}

}  // namespace vndoc6::bag
