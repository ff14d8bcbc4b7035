// Labels: how wide texts are, and where their lines break.
#pragma once

#include <vector>

#include "vndoc6/automation/text.h"

namespace vndoc6::drawing {

// From one line of a text to the next, in parts of the font's size.
constexpr double kLineHeight = 1.2;

// The width of a text in parts of the font's size. An estimate: nobody here has the font. It errs
// on the wide side.
double TextWidth(TextView text, bool bold);

// The text's lines for a width in parts of the font's size: broken at its line breaks, after
// blanks and hyphens and between ideographs; within a word only where the word alone is too wide.
std::vector<Text> WrapText(TextView text, double width, bool bold);

// The width of the widest part of a text that stays on one line.
double WidestWord(TextView text, bool bold);

// The label of a line as it is set.
struct LineLabel {
  std::vector<Text> lines;
  double width = 0;  // pixels
  double height = 0;
};
LineLabel SetLineLabel(TextView text, double size, bool bold);

// At most `count` lines; what was cut off is told by an ellipsis.
void CutLines(std::vector<Text>& lines, size_t count);

// True when the first letter with a direction is Hebrew, Arabic or the like.
bool RunsRightToLeft(TextView text);

}  // namespace vndoc6::drawing
