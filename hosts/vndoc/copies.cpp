#include "copies.h"

#include "common/properties.h"

namespace vndoc {

using vndoc6::automation::Make;

namespace {

template <class T>
Ref<T> Copy(T& original) {
  auto copy = Make<T>();
  copy->SetDocument(original.Document().get());
  copy->Load(original.Save(), original.Key());
  return copy;
}

bool DependsOnWhatIsGone(vnStep& step) {
  const Ref<vnDocument> document = step.Document();
  if (!document) return false;
  bool gone = false;
  ForEachIn(*step.Dependancies(), [&](Object& entry) {
    const Text& key = static_cast<vndoc6::Property&>(entry).Key();
    gone = gone || !document->Steps()->ItemByStepKey(key);
  });
  return gone;
}

}  // namespace

Ref<vnStep> CopyToRead(vnStep& step) { return DependsOnWhatIsGone(step) ? &step : Copy(step); }

Ref<vnLink> CopyToRead(vnLink& link) { return Copy(link); }

Ref<Object> FrugalVisitor::ObjectToVisit(Object& member) {
  if (auto* const step = dynamic_cast<vnStep*>(&member)) return CopyToRead(*step);
  if (auto* const link = dynamic_cast<vnLink*>(&member)) return CopyToRead(*link);
  return &member;
}

}  // namespace vndoc
