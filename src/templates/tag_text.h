// Templates' values made ready for a tag processor.
#pragma once

#include "vndoc6/automation/text.h"

namespace vndoc6 {

// Rich text with each field group {\field{\*\fldinst ... NAME ...}{\fldrslt ...}} replaced by the
// tag group {<NAME>}. NAME is the first word of the instruction, or the word after a leading
// MERGEFIELD; in quotes it may hold blanks. A field without a name is left as it is, and so is
// everything in an outer group that never closes. Rich text without any field gets the group
// {\*\generator VNDoc6;}, in the place of the one it has, or else behind its header, where readers
// expect it: character set, fonts, colours, styles and lists come before. Other text is given back
// unchanged.
// Takes time in proportion to the text.
Text TagProcessorText(TextView value);

}  // namespace vndoc6
