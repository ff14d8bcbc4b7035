#include "sheets.h"

#include <algorithm>
#include <cmath>

namespace vndoc6::drawing {
namespace {

constexpr double kPixelsPerMillimetre = 96 / 25.4;
constexpr double kMostSheets = 500;
constexpr double kLeastScale = 8.0 / 9;  // of letters of 9 points, which are usual

Point SizeOf(Paper paper) {
  const auto millimetres = [](double width, double height) {
    return Point{width * kPixelsPerMillimetre, height * kPixelsPerMillimetre};
  };
  if (paper == Paper::kA3) return millimetres(297, 420);
  if (paper == Paper::kLetter) return millimetres(215.9, 279.4);
  return millimetres(210, 297);
}

struct Interval {
  double begin, end;
};

// Where a chart is cut in one direction.
class Cutter {
 public:
  explicit Cutter(const std::vector<Interval>& taken) {
    for (const Interval& interval : taken) {
      begins_.push_back(interval.begin);
      ends_.push_back(interval.end);
    }
    std::sort(begins_.begin(), begins_.end());
    std::sort(ends_.begin(), ends_.end());
  }

  // The borders of the pieces, the first and the last included.
  std::vector<double> Cut(Interval whole, double longest) const {
    std::vector<double> borders = {whole.begin};
    while (whole.end - borders.back() > longest + .5) {
      borders.push_back(Best(borders.back(), longest));
    }
    borders.push_back(whole.end);
    return borders;
  }

 private:
  // Where the fewest are cut; of equals the farthest.
  double Best(double begin, double longest) const {
    constexpr double kLeastFull = .4;
    constexpr double kBeyond = 14;
    double best = begin + longest;
    size_t least = CutAt(best);
    for (auto end = std::lower_bound(ends_.begin(), ends_.end(), begin + kLeastFull * longest);
         end != ends_.end() && *end + kBeyond < begin + longest; ++end) {
      const size_t count = CutAt(*end + kBeyond);
      if (count > least) continue;
      least = count;
      best = *end + kBeyond;
    }
    return best;
  }

  size_t CutAt(double at) const {
    const auto begun = std::lower_bound(begins_.begin(), begins_.end(), at) - begins_.begin();
    const auto ended = std::upper_bound(ends_.begin(), ends_.end(), at) - ends_.begin();
    return static_cast<size_t>(begun - ended);
  }

  std::vector<double> begins_, ends_;
};

class SheetFinder {
 public:
  SheetFinder(const Drawing& drawing, Point paper) : drawing_(drawing) {
    out_.paper = paper;
    const double wide = paper.x - 2 * kSheetMargin, high = paper.y - 2 * kSheetMargin;
    const Box& extent = drawing.extent;
    const double fitting =
        std::min(wide / std::max(extent.width, 1.0), high / std::max(extent.height, 1.0));
    out_.scale = std::clamp(fitting, kLeastScale, 1.0);
    // What is strewn too far for any heap of paper gets smaller.
    while ((extent.width * out_.scale / wide + 1) * (extent.height * out_.scale / high + 1) >
           kMostSheets) {
      out_.scale /= 2;
    }
    columns_ = Cutter(Taken(true)).Cut({extent.left, extent.Right()}, wide / out_.scale);
    rows_ = Cutter(Taken(false)).Cut({extent.top, extent.Bottom()}, high / out_.scale);
  }

  size_t Count() const { return (columns_.size() - 1) * (rows_.size() - 1); }

  Sheets Find() {
    for (size_t row = 0; row + 1 < rows_.size(); ++row) {
      for (size_t column = 0; column + 1 < columns_.size(); ++column) {
        out_.sheets.push_back(
            {{columns_[column], rows_[row], columns_[column + 1] - columns_[column],
              rows_[row + 1] - rows_[row]},
             {}});
      }
    }
    for (const Line& line : drawing_.lines) {
      for (size_t i = 1; i < line.points.size(); ++i) {
        for (size_t k = 1; k + 1 < rows_.size(); ++k) {
          Connect(line.points[i - 1], line.points[i], rows_[k], false);
        }
        for (size_t k = 1; k + 1 < columns_.size(); ++k) {
          Connect(line.points[i - 1], line.points[i], columns_[k], true);
        }
      }
    }
    for (Sheet& sheet : out_.sheets) ChooseRows(sheet.connectors);
    return std::move(out_);
  }

 private:
  static void ChooseRows(std::vector<Connector>& connectors) {
    constexpr size_t kRows = 2;
    std::sort(connectors.begin(), connectors.end(), [](const Connector& a, const Connector& b) {
      if (a.side != b.side) return a.side < b.side;
      return a.at.x != b.at.x ? a.at.x < b.at.x : a.at.y < b.at.y;
    });
    for (size_t i = 1; i < connectors.size(); ++i) {
      const Connector& before = connectors[i - 1];
      Connector& connector = connectors[i];
      const bool near = connector.side == before.side &&
                        std::hypot(connector.at.x - before.at.x, connector.at.y - before.at.y) < 18;
      connector.row = near ? (before.row + 1) % kRows : 0;
    }
  }

  // What had better not be cut.
  std::vector<Interval> Taken(bool across) const {
    std::vector<Interval> taken;
    const auto add = [&](const Box& box) {
      taken.push_back(across ? Interval{box.left, box.Right()} : Interval{box.top, box.Bottom()});
    };
    for (const Figure& step : drawing_.steps) add(step.box);
    for (const Line& line : drawing_.lines) {
      if (line.label_box.width > 0) add(line.label_box);
    }
    return taken;
  }

  static size_t PieceOf(const std::vector<double>& borders, double at) {
    const auto border = std::upper_bound(borders.begin() + 1, borders.end() - 1, at);
    return static_cast<size_t>(border - borders.begin()) - 1;
  }

  void Connect(Point a, Point b, double border, bool upright) {
    double from = upright ? a.x : a.y, to = upright ? b.x : b.y;
    if ((from < border) == (to < border)) return;
    const double part = (border - from) / (to - from);
    const Point at{a.x + (b.x - a.x) * part, a.y + (b.y - a.y) * part};
    const size_t count = columns_.size() - 1;
    const size_t column = upright ? 0 : PieceOf(columns_, at.x);
    const size_t row = upright ? PieceOf(rows_, at.y) : 0;
    const auto& borders = upright ? columns_ : rows_;
    const auto before =
        static_cast<size_t>(std::find(borders.begin(), borders.end(), border) - borders.begin()) -
        1;
    const size_t first = upright ? row * count + before : before * count + column;
    const size_t second = upright ? first + 1 : first + count;
    ++number_;
    out_.sheets[first].connectors.push_back({at, upright ? Side::kRight : Side::kBottom, number_});
    out_.sheets[second].connectors.push_back({at, upright ? Side::kLeft : Side::kTop, number_});
  }

  const Drawing& drawing_;
  Sheets out_;
  std::vector<double> columns_, rows_;
  size_t number_ = 0;
};

}  // namespace

Sheets FindSheets(const Drawing& drawing, Paper paper) {
  const Point size = SizeOf(paper);
  SheetFinder upright(drawing, size), turned(drawing, {size.y, size.x});
  return turned.Count() < upright.Count() ? turned.Find() : upright.Find();
}

}  // namespace vndoc6::drawing
