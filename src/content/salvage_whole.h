// Whether a text is just as an object or a collection writes it.
#pragma once

#include "bag/bag_scanner.h"
#include "document/saved_form.h"
#include "vndoc6/bag/kept_text.h"

namespace vndoc6::salvage {

// Which texts may stand in a whole one: those that damage leaves no trace in, or any.
enum class Texts { kClean, kAny };

// Every entry is known, there once and of the right type, none is missing, and so on down to the
// last. Then there is nothing to mend.
bool IsWhole(const bag::KeptText& text, const SavedEntry& what, Texts texts = Texts::kClean);

// The same for a member, `key` being that of its entry. An object of its own may be an empty text,
// which stands for one that nobody read; a member may not.
bool IsWholeMember(const bag::KeptText& text, const SavedEntry& collection, TextView key,
                   Texts texts = Texts::kClean);

// Whether the marks around an entry's text are those of a bag that lies in so many texts. A reader
// takes the marks of other levels as well, as long as nothing else comes of it.
bool IsSpelledRight(const bag::BagEntry& found, uint32_t depth);

// Whether no mark in a text or a key is one of the texts around it, of which there are so many.
bool EndsNothing(std::string_view raw, uint32_t depth);

// A text as it lies in a file, without what damage leaves there: zero bytes, quotes, and bytes that
// are no characters.
bool IsWholeText(std::string_view raw);

}  // namespace vndoc6::salvage
