// A document that carries one number in every part of it, so that a mixture of two states shows.
#pragma once

#include <optional>

#include "vndoc6/document/document.h"

namespace vndoc6::testing {

// With steps and links, but small: it is saved thousands of times.
automation::Ref<vnDocument> NumberedDocument(int32_t number);
void SetNumber(vnDocument& document, int32_t number);
// Nothing when anything is missing or the parts disagree.
std::optional<int32_t> NumberOf(vnDocument& document);
// That of the document in a file; nothing when it does not load whole.
std::optional<int32_t> NumberInFile(const Text& name);

}  // namespace vndoc6::testing
