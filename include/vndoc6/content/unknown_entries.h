// What an object's saved text held beside the entries that this version knows: what a newer version
// saved. It is kept and saved again; hosts that export a document, or make one, get and put it
// here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "vndoc6/automation/object.h"
#include "vndoc6/automation/text.h"
#include "vndoc6/automation/variant.h"

namespace vndoc6 {

struct UnknownEntry {
  Text key;
  // Empty when the entry's value does not follow its type.
  automation::Variant value;
  // The entry as it stands in the text of a bag, in UTF-8.
  std::string text;
};

// In the order of the text; none for an object that has no saved text of its own. Builds what is
// kept as text, as reading any property does.
std::vector<UnknownEntry> UnknownEntriesOf(automation::Object& object);

// All of them in one text, that of a bag, in UTF-8; empty for none.
std::string UnknownTextOf(automation::Object& object);

// Replaces the object's unknown entries by those of such a text. False, and nothing changed, when
// the text is not well formed or the object has no saved text of its own. Of an entry under a key
// that this version knows, the object's own counts with the next load.
bool PutUnknownText(automation::Object& object, std::string_view text);

}  // namespace vndoc6
