#include "write_places.h"

#include <algorithm>
#include <cmath>

namespace vndoc6::drawing {
namespace {

int32_t Twips(double pixels) { return static_cast<int32_t>(std::lround(pixels * kTwipsPerPixel)); }

void WriteBox(const Box& box, vnFigure& figure) {
  const auto twips = [](double pixels) { return static_cast<float>(pixels * kTwipsPerPixel); };
  figure.SetLeft(twips(box.left));
  figure.SetTop(twips(box.top));
  figure.SetWidth(twips(box.width));
  figure.SetHeight(twips(box.height));
}

void WritePoints(const std::vector<Point>& points, vnLine& line) {
  line.SetOrigX(Twips(points.front().x));
  line.SetOrigY(Twips(points.front().y));
  line.SetDestX(Twips(points.back().x));
  line.SetDestY(Twips(points.back().y));
  line.SetExtraPointCount(0);
  for (size_t i = 1; i + 1 < points.size(); ++i) {
    line.SetExtraPointX(static_cast<int32_t>(i), Twips(points[i].x));
    line.SetExtraPointY(static_cast<int32_t>(i), Twips(points[i].y));
  }
}

Variant At(size_t number) { return Variant(static_cast<int32_t>(number)); }

}  // namespace

LaidOut WritePlaces(const Drawing& drawing, vnDocument& document) {
  LaidOut out;
  for (const Figure& figure : drawing.steps) {
    if (!figure.laid_out) continue;
    WriteBox(figure.box, *document.Steps()->Item(At(figure.step))->Figure());
    out.steps.push_back(figure.step);
  }
  for (const Line& line : drawing.lines) {
    if (!line.laid_out) continue;
    WritePoints(line.points, *document.Links()->Item(At(line.link))->Line());
    out.links.push_back(line.link);
  }
  const auto containers = document.Containers().ToObject();
  for (const Figure& figure : drawing.containers) {
    if (!figure.laid_out) continue;
    auto& list = dynamic_cast<vnContainers&>(*containers);
    WriteBox(figure.box, *list.Item(At(figure.container))->Figure());
    out.containers.push_back(figure.container);
  }
  for (auto* const numbers : {&out.steps, &out.links, &out.containers}) {
    std::sort(numbers->begin(), numbers->end());
  }
  return out;
}

}  // namespace vndoc6::drawing
