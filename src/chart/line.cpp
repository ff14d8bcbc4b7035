#include "chart/line.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <string>
#include <string_view>
#include <system_error>

#include "automation/describe.h"
#include "automation/error.h"
#include "automation/services.h"
#include "bag/bag_reader.h"
#include "bag/bag_scanner.h"
#include "chart/field_table.h"
#include "chart/font_text.h"
#include "core/detail_id.h"
#include "document/document.h"
#include "platform/keys.h"
#include "process/link.h"

namespace vndoc6 {
namespace {

using V = LineValues;

// What stands before the font in the saved text, and behind it.
constexpr std::tuple kToFont{
    row(&V::arrow_dest, "AD", 3, vndArrowDest),
    row(&V::arrow_dest_size, "ADS", 0, vndArrowDestSize),
    row(&V::arrow_mid, "AM", 0, vndArrowMid),
    row(&V::arrow_mid_size, "AMS", 0, vndArrowMidSize),
    row(&V::arrow_orig, "AO", 0, vndArrowOrig),
    row(&V::arrow_orig_size, "AOS", 0, vndArrowOrigSize),
    row(&V::back_mode, "BM", 2, vndBackMode),
    row(&V::dest_adjustable, "DA", false, vndDestAdjustable),
    row(&V::dest_figure_index, "DFI", 0, vndDestFigureIndex),
    row(&V::dest_x, "DX", 0, vndDestX),
    row(&V::dest_y, "DY", 0, vndDestY),
    row(&V::draw_colour, "DC", 0, vndDrawColour),
    row(&V::draw_style, "DS", 0, vndDrawStyle),
    row(&V::draw_width, "DW", 1, vndDrawWidth),
};
constexpr std::tuple kFromFont{
    row(&V::fore_colour, "FC", 0, vndForeColour),
    row(&V::hidden, "H", false, vndHidden),
    row(&V::link_style, "LS", 0, vndLinkStyle),
    row(&V::logical, "L", true, vndLogical),
    row(&V::marked, "M", false, vndMarked),
    row(&V::oriented_text, "OT", false, vndOrientedText),
    row(&V::orig_adjustable, "OA", false, vndOrigAdjustable),
    row(&V::orig_figure_index, "OFI", 0, vndOrigFigureIndex),
    row(&V::orig_x, "OX", 0, vndOrigX),
    row(&V::orig_y, "OY", 0, vndOrigY),
    row(&V::orthogonal_dynamic, "OD", false, vndOrthogonalDynamic),
    row(&V::rigid, "R", false, vndRigid),
    row(&V::selectable, "S", true, vndSelectable),
    row(&V::show_jump, "SJ", -1, vndShowJump),
    row(&V::stretchable, "Stc", true, vndStrechable),
    row(&V::text_segment, "TS", 0, vndTextSegment),
    row(&V::user_data, "UD", 0, vndUserData),
    // Hosts have always been told of a width here.
    row(&V::z_order_index, "ZOI", 0, vndWidth),
};
constexpr auto kFields = std::tuple_cat(kToFont, kFromFont);

// What a host may ask for by ExtraPointCount; single points and loaded texts may go beyond it.
constexpr int32_t kMaxCountPut = 75;
// More than any drawing has.
constexpr int32_t kMaxCount = 1'000'000;
// Points up to here are saved whether anybody has set them or not, as hosts that read the text
// expect. A count above it without its points is not the work of a save.
constexpr int32_t kSavedUnset = 1000;

// A point's entries in the saved text, followed by its number. In every file: never change one.
constexpr std::string_view kPointX = "EPX_";
constexpr std::string_view kPointY = "EPY_";

// The number as a save writes it; 0 for anything else.
int32_t PointNumber(std::string_view digits) {
  int32_t number = 0;
  const char* const end = digits.data() + digits.size();
  const std::from_chars_result result = std::from_chars(digits.data(), end, number);
  return result.ec == std::errc() && result.ptr == end && digits[0] != '0' ? number : 0;
}

}  // namespace

automation::Object* vnLine::FindParent() const { return OwnerOrDocument(link_.get()); }

automation::Ref<vnLink> vnLine::Link() const { return link_.get(); }

void vnLine::SetLink(vnLink* poLink) {
  link_ = poLink;
  ParentChanged();
}

template <class T>
void vnLine::Put(T Values::*member, const T& value) {
  values_.*member = value;
  ReportChange(DetailIdOf(kFields, member));
}
template void vnLine::Put(bool Values::*, const bool&);
template void vnLine::Put(int32_t Values::*, const int32_t&);

// A host's handler may let go of this line.
void vnLine::ReportChange(int32_t detail_id) {
  vnDocument* const document = InternalDocument();
  vnLink* const link = link_.get();
  if (document != nullptr && link != nullptr) document->RaiseLinkChange(link, detail_id);
}

automation::Ref<automation::Font> vnLine::Font() {
  if (!font_) font_ = automation::services().make_font().get();
  return font_.get();
}

void vnLine::SetFont(automation::Font* poFont) {
  font_ = poFont;
  ReportChange(vndFont);
}

const vnLine::Point& vnLine::PointAt(int32_t index) const {
  if (index < 0 || index > ExtraPointCount()) {
    throw automation::Error(automation::kSubscriptOutOfRange);
  }
  static constexpr Point kUnset;
  const auto found = points_.find(index);
  return found != points_.end() ? found->second : kUnset;
}

void vnLine::PutPoint(int32_t index, int32_t Point::*member, int32_t value, int32_t detail_id) {
  if (index < 0 || index > kMaxCount) throw automation::Error(automation::kSubscriptOutOfRange);
  points_[index].*member = value;
  point_count_ = std::max(point_count_, index);
  if (!update_extra_points_) ReportChange(detail_id);
}

void vnLine::SetExtraPointX(int32_t plIndex, int32_t plValue) {
  PutPoint(plIndex, &Point::x, plValue, vndExtraPointX);
}

void vnLine::SetExtraPointY(int32_t plIndex, int32_t plValue) {
  PutPoint(plIndex, &Point::y, plValue, vndExtraPointY);
}

void vnLine::SetExtraPointCount(int32_t plExtraPointCount) {
  point_count_ = std::clamp(plExtraPointCount, 0, kMaxCountPut);
  points_.erase(points_.upper_bound(point_count_), points_.end());
  if (update_extra_points_) return;
  const automation::Ref<vnLine> alive(this);
  ReportChange(vndExtraPointY);
  ReportChange(vndExtraPointX);
}

void vnLine::InternalWrite(bag::BagWriter& writer) const {
  WriteFields(writer, kToFont, values_);
  // Unlike a figure or the chart, a line that nobody loaded has no font to save: error 91.
  WriteFontText(writer, *font_);
  WriteFields(writer, kFromFont, values_);
  WritePoints(writer);
}

void vnLine::WritePoints(bag::BagWriter& writer) const {
  writer.Add("EPC", ExtraPointCount());
  for (const int32_t index : InternalPointNumbers()) {
    const std::string number = std::to_string(index);
    const Point& point = PointAt(index);
    writer.Add(std::string(kPointX) + number, point.x);
    writer.Add(std::string(kPointY) + number, point.y);
  }
}

std::vector<int32_t> vnLine::InternalPointNumbers() const {
  std::vector<int32_t> numbers(static_cast<size_t>(std::min(point_count_, kSavedUnset)));
  std::iota(numbers.begin(), numbers.end(), 1);
  for (auto set = points_.upper_bound(kSavedUnset); set != points_.end(); ++set) {
    numbers.push_back(set->first);
  }
  return numbers;
}

void vnLine::InternalLoad(const bag::KeptText& text) {
  bag::BagReader reader(text);
  ReadFields(reader, kToFont, values_);
  const automation::Ref<automation::Font> font = automation::services().make_font();
  automation::WriteFont(*font, ReadFontText(reader));
  font_ = font.get();
  ReadFields(reader, kFromFont, values_);
  ReadPoints(text, reader);
}

// Goes by the entries that there are: a count that no text backs takes neither time nor memory.
void vnLine::ReadPoints(const bag::KeptText& text, bag::BagReader& reader) {
  point_count_ = std::clamp(reader.GetLong("EPC"), 0, kMaxCount);
  points_.clear();
  if (point_count_ == 0) return;
  bag::BagScanner scanner(text);
  bag::BagEntry entry;
  while (scanner.Next(entry)) {
    const bool is_x = entry.key.starts_with(kPointX);
    if (!is_x && !entry.key.starts_with(kPointY)) continue;
    const int32_t number = PointNumber(entry.key.substr(kPointX.size()));
    if (number < 1 || number > point_count_) continue;
    Point& point = points_[number];
    (is_x ? point.x : point.y) = reader.GetLong(entry.key);
  }
}

void vnLine::InternalCopyFrom(const vnLine& other) {
  values_ = other.values_;
  font_ = CopyFont(other.font_.get()).get();
  point_count_ = other.point_count_;
  points_ = other.points_;
}

const automation::ClassInfo& vnLine::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnLine>(
      "vnLine", "The drawn connector of a link.",
      {0x0264DBF2, 0x3B99, 0x477C, {0x8D, 0x32, 0x8D, 0x2F, 0xEC, 0xAE, 0x46, 0x39}},
      {0xCDCE5D90, 0xCA08, 0x4E4C, {0xAB, 0xC1, 0x78, 0x58, 0x7C, 0xCB, 0x27, 0x25}},
      {
          get<&vnLine::Document>("Document"),
          putref<&vnLine::SetDocument>("Document", "poDocument"),
          get<&vnLine::Link>("Link"),
          putref<&vnLine::SetLink>("Link", "poLink"),
          get<&vnLine::OrigFigureIndex>("OrigFigureIndex"),
          put<&vnLine::SetOrigFigureIndex>("OrigFigureIndex", "plOrigFigureIndex"),
          get<&vnLine::DestFigureIndex>("DestFigureIndex"),
          put<&vnLine::SetDestFigureIndex>("DestFigureIndex", "plDestFigureIndex"),
          get<&vnLine::ZOrderIndex>("ZOrderIndex"),
          put<&vnLine::SetZOrderIndex>("ZOrderIndex", "plZOrderIndex"),
          get<&vnLine::Marked>("Marked"),
          put<&vnLine::SetMarked>("Marked", "pbMarked"),
          get<&vnLine::Logical>("Logical"),
          put<&vnLine::SetLogical>("Logical", "pbLogical"),
          get<&vnLine::Selectable>("Selectable"),
          put<&vnLine::SetSelectable>("Selectable", "pbSelectable"),
          get<&vnLine::Stretchable>("Stretchable"),
          put<&vnLine::SetStretchable>("Stretchable", "pbStretchable"),
          get<&vnLine::OrthogonalDynamic>("OrthogonalDynamic"),
          put<&vnLine::SetOrthogonalDynamic>("OrthogonalDynamic", "pbOrthogonalDynamic"),
          get<&vnLine::OrientedText>("OrientedText"),
          put<&vnLine::SetOrientedText>("OrientedText", "pbOrientedText"),
          get<&vnLine::Hidden>("Hidden"),
          put<&vnLine::SetHidden>("Hidden", "pbHidden"),
          get<&vnLine::OrigAdjustable>("OrigAdjustable"),
          put<&vnLine::SetOrigAdjustable>("OrigAdjustable", "pbOrigAdjustable"),
          get<&vnLine::DestAdjustable>("DestAdjustable"),
          put<&vnLine::SetDestAdjustable>("DestAdjustable", "pbDestAdjustable"),
          get<&vnLine::Rigid>("Rigid"),
          put<&vnLine::SetRigid>("Rigid", "pbRigid"),
          get<&vnLine::BackMode>("BackMode"),
          put<&vnLine::SetBackMode>("BackMode", "plBackMode"),
          get<&vnLine::LinkStyle>("LinkStyle"),
          put<&vnLine::SetLinkStyle>("LinkStyle", "plLinkStyle"),
          get<&vnLine::ArrowDest>("ArrowDest"),
          put<&vnLine::SetArrowDest>("ArrowDest", "plArrowDest"),
          get<&vnLine::ArrowOrig>("ArrowOrig"),
          put<&vnLine::SetArrowOrig>("ArrowOrig", "plArrowOrig"),
          get<&vnLine::ArrowMid>("ArrowMid"),
          put<&vnLine::SetArrowMid>("ArrowMid", "plArrowMid"),
          get<&vnLine::ArrowDestSize>("ArrowDestSize"),
          put<&vnLine::SetArrowDestSize>("ArrowDestSize", "plArrowDestSize"),
          get<&vnLine::ArrowOrigSize>("ArrowOrigSize"),
          put<&vnLine::SetArrowOrigSize>("ArrowOrigSize", "plArrowOrigSize"),
          get<&vnLine::ArrowMidSize>("ArrowMidSize"),
          put<&vnLine::SetArrowMidSize>("ArrowMidSize", "plArrowMidSize"),
          get<&vnLine::DrawStyle>("DrawStyle"),
          put<&vnLine::SetDrawStyle>("DrawStyle", "plDrawStyle"),
          get<&vnLine::DrawWidth>("DrawWidth"),
          put<&vnLine::SetDrawWidth>("DrawWidth", "plDrawWidth"),
          get<&vnLine::ShowJump>("ShowJump"),
          put<&vnLine::SetShowJump>("ShowJump", "plShowJump"),
          get<&vnLine::TextSegment>("TextSegment"),
          put<&vnLine::SetTextSegment>("TextSegment", "plTextSegment"),
          get<&vnLine::DrawColour>("DrawColour"),
          put<&vnLine::SetDrawColour>("DrawColour", "plDrawColour"),
          get<&vnLine::ForeColour>("ForeColour"),
          put<&vnLine::SetForeColour>("ForeColour", "plForeColour"),
          get<&vnLine::UserData>("UserData"),
          put<&vnLine::SetUserData>("UserData", "plUserData"),
          get<&vnLine::Font>("Font"),
          putref<&vnLine::SetFont>("Font", "poFont"),
          get<&vnLine::OrigX>("OrigX"),
          put<&vnLine::SetOrigX>("OrigX", "plOrigX"),
          get<&vnLine::OrigY>("OrigY"),
          put<&vnLine::SetOrigY>("OrigY", "plOrigY"),
          get<&vnLine::DestX>("DestX"),
          put<&vnLine::SetDestX>("DestX", "plDestX"),
          get<&vnLine::DestY>("DestY"),
          put<&vnLine::SetDestY>("DestY", "plDestY"),
          get<&vnLine::ExtraPointX>("ExtraPointX", "plIndex"),
          put<&vnLine::SetExtraPointX>("ExtraPointX", "plIndex", "plValue"),
          get<&vnLine::ExtraPointY>("ExtraPointY", "plIndex"),
          put<&vnLine::SetExtraPointY>("ExtraPointY", "plIndex", "plValue"),
          get<&vnLine::ExtraPointCount>("ExtraPointCount"),
          put<&vnLine::SetExtraPointCount>("ExtraPointCount", "plExtraPointCount"),
          hidden(get<&vnLine::UpdateExtraPoints>("UpdateExtraPoints")),
          hidden(put<&vnLine::SetUpdateExtraPoints>("UpdateExtraPoints", "pbUpdateExtraPoints")),
      });
  return info;
}

}  // namespace vndoc6
