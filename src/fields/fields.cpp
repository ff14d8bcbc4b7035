#include "fields/fields.h"

#include "bag/bag_writer.h"
#include "fields/stand_ins.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"

namespace vndoc6::fields {

using automation::Object;
using automation::Ref;

namespace {

template <class T>
Ref<Object> MakeLoaded(TextView programmatic_id, const Text& text) {
  Ref<Object> object = automation::TryCreateObject(programmatic_id);
  if (!object) object = automation::Make<T>();
  automation::Put(*object, u"Text", {text});
  return object;
}

}  // namespace

// Hosts register these identifiers: never change one.
Ref<Object> MakeFieldDefs(const Text& text) {
  return MakeLoaded<FieldDefs>(u"Fields.FieldDefs", text);
}
Ref<Object> MakeFieldValues(const Text& text) {
  return MakeLoaded<FieldValues>(u"Fields.FieldValues", text);
}
Ref<Object> MakeFormDef(const Text& text) { return MakeLoaded<FormDef>(u"Forms2.FormDef", text); }

Ref<Object> Read(Object& owner, bag::Lazy<Object>& kept, Ref<Object> (*make)(const Text& text)) {
  // Making it may run a host's code, which may let go of the owner.
  const Ref<Object> self(&owner);
  return kept.Get([&] { return make(kept.text().ToText()); }, [](Object&, const bag::KeptText&) {});
}

void Write(bag::BagWriter& writer, std::string_view key, const bag::Lazy<Object>& kept) {
  if (Object* object = kept.built()) {
    writer.Add(key, TextOf(*object));
  } else {
    writer.Add(key, kept.text());
  }
}

Text TextOf(Object& object) { return automation::Get(object, u"Text").ToText(); }

void SetDatabase(Object& field_defs, Object* database) {
  automation::Put(field_defs, u"Database", {Ref<Object>(database)});
}

}  // namespace vndoc6::fields
