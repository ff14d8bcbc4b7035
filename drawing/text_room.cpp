#include "text_room.h"

#include <algorithm>
#include <cmath>

#include "label.h"

namespace vndoc6::drawing {
namespace {

// Half of it is a whole number, too.
double Even(double pixels) { return 2 * std::ceil(pixels / 2); }

// Enough for any label that people read; what is longer is cut.
constexpr int kMostSteps = 60;

// A word that is longer than this is broken.
constexpr double kLongestWord = 240;

bool IsWideEnough(const Figure& figure, const SetLabel& label) {
  if (label.room.width >= kLongestWord) return true;
  const double widest = WidestWord(figure.label, figure.font.bold) * figure.font.size;
  return widest + 1 <= label.room.width;
}

bool HoldsLabel(const Figure& figure, const SetLabel& label) {
  const double high = figure.font.size * kLineHeight;
  double top = label.room.CentreY() - label.Height(figure.font.size) / 2;
  if (label.Height(figure.font.size) > label.room.height) return false;
  for (const Text& line : label.lines) {
    const double width = TextWidth(line, figure.font.bold) * figure.font.size;
    // The letters don't fill the line's height.
    const Box place{label.room.CentreX() - width / 2, top + high * .15, width, high * .7};
    if (!HoldsLine(*figure.outline, figure.box, figure.quarters, place)) return false;
    top += high;
  }
  return true;
}

void GrowAround(Box& box, double width, double height) {
  box = {box.left - width / 2, box.top - height / 2, box.width + width, box.height + height};
}

}  // namespace

double SetLabel::Height(double size) const {
  return static_cast<double>(lines.size()) * size * kLineHeight;
}

SetLabel LabelOf(const Figure& figure) {
  SetLabel label;
  label.room = TextBox(*figure.outline, figure.box, figure.quarters);
  label.room.left += figure.margin.x;
  label.room.top += figure.margin.y;
  label.room.width = std::max(label.room.width - 2 * figure.margin.x, 8.0);
  label.room.height = std::max(label.room.height - 2 * figure.margin.y, 8.0);
  label.lines = WrapText(figure.label, label.room.width / figure.font.size, figure.font.bold);
  return label;
}

Box TitleRoom(const Figure& container) {
  constexpr double kHeight = 40;
  const Box& box = container.box;
  Point at = container.title_at;
  if (at == Point{}) at = {box.left + 8, box.top + 6};
  return {at.x, at.y, std::max(box.Right() - 8 - at.x, 8.0), kHeight};
}

void FitToLabel(Figure& figure) {
  const Insets& insets = figure.outline->text;
  const double kWidest = std::max(84.0, 150 * (1 - insets.left - insets.right));
  const std::vector<Text> lines =
      WrapText(figure.label, kWidest / figure.font.size, figure.font.bold);
  double width = 0;
  for (const Text& line : lines) width = std::max(width, TextWidth(line, figure.font.bold));
  const double text_width = width * figure.font.size + 12;
  const double text_height = static_cast<double>(lines.size()) * figure.font.size * 1.25 + 10;
  figure.box.width = Even(std::max(110.0, text_width / (1 - insets.left - insets.right)));
  figure.box.height = Even(std::max(44.0, text_height / (1 - insets.top - insets.bottom)));
  const Box usual = figure.box;
  GrowToLabel(figure);
  figure.box = {usual.left, usual.top, figure.box.width, figure.box.height};
}

void GrowToLabel(Figure& figure) {
  constexpr double kPart = .03;
  const bool long_word = !IsWideEnough(figure, LabelOf(figure));
  const Insets& insets = figure.outline->text;
  const bool slanting = insets.left + insets.top + insets.right + insets.bottom > .5;
  for (int i = 0; i < kMostSteps; ++i) {
    const SetLabel label = LabelOf(figure);
    const double step = Even(std::max(4.0, kPart * (figure.box.width + figure.box.height)));
    if (long_word && !IsWideEnough(figure, label)) {
      GrowAround(figure.box, step, 0);
    } else if (!HoldsLabel(figure, label)) {
      GrowAround(figure.box, slanting ? step : 0, step);
    } else {
      break;
    }
  }
}

}  // namespace vndoc6::drawing
