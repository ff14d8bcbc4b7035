#include "hops.h"

#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace vndoc6::drawing {
namespace {

constexpr double kCell = 256;
constexpr double kMaxCells = 256;          // of one part; longer ones hop over nothing
constexpr size_t kMaxInCell = 64;          // where more lines meet, hops would only confuse
constexpr double kClear = 2 * kHopRadius;  // between hops, and to the ends of parts

struct Upright {
  size_t line;
  double x, top, bottom;
};

int64_t Cell(double at) { return static_cast<int64_t>(std::floor(at / kCell)); }
int64_t CellNumber(int64_t x, int64_t y) { return y * (int64_t{1} << 32) + x; }
bool IsShort(double a, double b) { return std::abs(a - b) / kCell < kMaxCells; }

class HopFinder {
 public:
  explicit HopFinder(const std::vector<Line>& lines) {
    for (size_t i = 0; i < lines.size(); ++i) {
      const auto& points = lines[i].points;
      for (size_t k = 1; k < points.size(); ++k) AddUpright(i, points[k - 1], points[k]);
    }
  }

  std::vector<double> Crossings(size_t line, Point a, Point b) const {
    std::vector<double> found;
    if (a.y != b.y || !IsShort(a.x, b.x)) return found;
    const auto [low, high] = std::minmax(a.x, b.x);
    for (int64_t x = Cell(low); x <= Cell(high); ++x) {
      const auto members = uprights_.find(CellNumber(x, Cell(a.y)));
      if (members == uprights_.end()) continue;
      for (const Upright& upright : members->second) {
        const bool crosses = upright.line != line && upright.x > low + kClear &&
                             upright.x < high - kClear && upright.top + kHopRadius < a.y &&
                             upright.bottom - kHopRadius > a.y;
        if (crosses) found.push_back(upright.x);
      }
    }
    std::sort(found.begin(), found.end());
    const auto too_near = [](double left, double right) { return right - left < kClear; };
    found.erase(std::unique(found.begin(), found.end(), too_near), found.end());
    return found;
  }

 private:
  void AddUpright(size_t line, Point a, Point b) {
    if (a.x != b.x || !IsShort(a.y, b.y)) return;
    const auto [top, bottom] = std::minmax(a.y, b.y);
    for (int64_t y = Cell(top); y <= Cell(bottom); ++y) {
      auto& members = uprights_[CellNumber(Cell(a.x), y)];
      if (members.size() < kMaxInCell) members.push_back({line, a.x, top, bottom});
    }
  }

  std::unordered_map<int64_t, std::vector<Upright>> uprights_;
};

// More than this many hops are drawn nowhere: where lines cross so often, hops help nobody, and the
// picture would be many times its document.
constexpr size_t kLeastKept = 500;
constexpr size_t kKeptPerLine = 8;

Hops NoHops(const std::vector<Line>& lines) {
  Hops hops(lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    hops[i].resize(lines[i].points.empty() ? 0 : lines[i].points.size() - 1);
  }
  return hops;
}

}  // namespace

Hops FindHops(const std::vector<Line>& lines) {
  const HopFinder finder(lines);
  const size_t most = kLeastKept + kKeptPerLine * lines.size();
  size_t count = 0;
  Hops hops(lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    const auto& points = lines[i].points;
    hops[i].resize(points.empty() ? 0 : points.size() - 1);
    if (!lines[i].hops || lines[i].curved) continue;
    for (size_t k = 1; k < points.size(); ++k) {
      hops[i][k - 1] = finder.Crossings(i, points[k - 1], points[k]);
      count += hops[i][k - 1].size();
      if (count > most) return NoHops(lines);
    }
  }
  return hops;
}

}  // namespace vndoc6::drawing
