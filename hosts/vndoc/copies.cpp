#include "copies.h"

namespace vndoc {

Ref<Object> FrugalVisitor::ObjectToVisit(Object& member) {
  if (auto* const step = dynamic_cast<vnStep*>(&member)) return CopyToRead(*step);
  if (auto* const link = dynamic_cast<vnLink*>(&member)) return CopyToRead(*link);
  return &member;
}

}  // namespace vndoc
