// What a document's file holds that the document has not: damaged texts and unknown keys.
#pragma once

#include <string>
#include <vector>

#include "command.h"

namespace vndoc {

struct LostText {
  enum class Kind { kDoesNotParse, kUnknownKey };
  Kind kind;
  std::string place;  // the keys that lead there, with slashes
  size_t offset;      // of kDoesNotParse: of the first fault, in bytes of the text at that place
};

// Compares the file's text with that of the same document when all of it was read and written
// again. What is missing there was not understood.
std::vector<LostText> FindLostTexts(std::string file, std::string written_again);

// The text that the document writes when all of it was read. The document is bound to another file
// from then on, and must not be saved. Throws Failure when it may not be written.
std::string WriteAgain(vnDocument& document);

}  // namespace vndoc
