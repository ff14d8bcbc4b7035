// The seam to field definitions, field values and forms. A host that has objects of its own for
// them registers "Fields.FieldDefs", "Fields.FieldValues" and "Forms2.FormDef"; where it has not,
// the library's own stand-ins are used. Either way they are reached by member name only: `Text`,
// and `Database` of field definitions.
#pragma once

#include <string_view>

#include "bag/bag_writer.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/bag/lazy.h"

namespace vndoc6::fields {

// Each makes a new object, loaded with the text. Raises what a host's object raises.
automation::Ref<automation::Object> MakeFieldDefs(const Text& text);
automation::Ref<automation::Object> MakeFieldValues(const Text& text);
automation::Ref<automation::Object> MakeFormDef(const Text& text);

// The object that `owner` keeps as text until it is read; `make` is one of the above.
automation::Ref<automation::Object> Read(
    automation::Object& owner, bag::Lazy<automation::Object>& kept,
    automation::Ref<automation::Object> (*make)(const Text& text));
// Writes it back: the text that the object gives, or the kept one.
void Write(bag::BagWriter& writer, std::string_view key, const bag::Lazy<automation::Object>& kept);

// The text to save for any of them.
Text TextOf(automation::Object& object);
// Hands field definitions the database that the document is bound to.
void SetDatabase(automation::Object& field_defs, automation::Object* database);

}  // namespace vndoc6::fields
