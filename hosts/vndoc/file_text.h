// What a document's file holds that the document has not: damaged texts and unknown keys.
#pragma once

#include <string>
#include <vector>

#include "command.h"

namespace vndoc {

struct LostText {
  // kTwice: a key that was there before in the same text. Only one of the two counts.
  enum class Kind { kDoesNotParse, kUnknownKey, kTwice };
  Kind kind;
  std::string place;  // the keys that lead there, with slashes
  size_t offset;      // of kDoesNotParse: of the first fault, in bytes of the text at that place
};

// Compares a file's text with that of the same document when all of it was read and written again.
// What is missing there was not understood.
std::vector<LostText> FindLostTexts(std::string file, std::string written_again);

// The same for a document that was loaded from the file and may be written. It is let go of.
std::vector<LostText> FindLostTexts(Context& context, const std::string& file,
                                    Ref<vnDocument> document);

// The text that a document writes when all of it was read. It is let go of. Throws Failure when it
// may not be written.
std::string WriteAgain(Ref<vnDocument> document);

}  // namespace vndoc
