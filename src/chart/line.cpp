#include "vndoc6/chart/line.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <string>
#include <string_view>
#include <system_error>

#include "bag/bag_reader.h"
#include "bag/bag_scanner.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "chart/font_text.h"
#include "core/scope.h"
#include "platform/keys.h"
#include "schema/rows.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/link.h"

namespace vndoc6 {
namespace {

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

// Their count alone is no measure: a file may say what it likes.
std::vector<int32_t> vnLine::PointNumbers(const automation::Object& line) {
  return static_cast<const vnLine&>(line).ExtraPointNumbers();
}

struct vnLine::Schema {
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnLine::Document, &vnLine::SetDocument>("Document", "poDocument")
            .not_content("leads back to the root"),
        property<&vnLine::Link, &vnLine::SetLink>("Link", "poLink")
            .not_content("leads back to the owner"),
        property<&vnLine::OrigFigureIndex, &vnLine::SetOrigFigureIndex>("OrigFigureIndex",
                                                                        "plOrigFigureIndex")
            .field(&Values::orig_figure_index, "OFI")
            .reports(vndOrigFigureIndex),
        property<&vnLine::DestFigureIndex, &vnLine::SetDestFigureIndex>("DestFigureIndex",
                                                                        "plDestFigureIndex")
            .field(&Values::dest_figure_index, "DFI")
            .reports(vndDestFigureIndex),

        // Hosts have always been told of a width here.
        property<&vnLine::ZOrderIndex, &vnLine::SetZOrderIndex>("ZOrderIndex", "plZOrderIndex")
            .field(&Values::z_order_index, "ZOI")
            .reports(vndWidth),
        property<&vnLine::Marked, &vnLine::SetMarked>("Marked", "pbMarked")
            .field(&Values::marked, "M")
            .reports(vndMarked),
        property<&vnLine::Logical, &vnLine::SetLogical>("Logical", "pbLogical")
            .field(&Values::logical, "L")
            .missing(true)
            .reports(vndLogical),
        property<&vnLine::Selectable, &vnLine::SetSelectable>("Selectable", "pbSelectable")
            .field(&Values::selectable, "S")
            .missing(true)
            .reports(vndSelectable),
        property<&vnLine::Stretchable, &vnLine::SetStretchable>("Stretchable", "pbStretchable")
            .field(&Values::stretchable, "Stc")
            .missing(true)
            .reports(vndStrechable),
        property<&vnLine::OrthogonalDynamic, &vnLine::SetOrthogonalDynamic>("OrthogonalDynamic",
                                                                            "pbOrthogonalDynamic")
            .field(&Values::orthogonal_dynamic, "OD")
            .reports(vndOrthogonalDynamic),
        property<&vnLine::OrientedText, &vnLine::SetOrientedText>("OrientedText", "pbOrientedText")
            .field(&Values::oriented_text, "OT")
            .reports(vndOrientedText),
        property<&vnLine::Hidden, &vnLine::SetHidden>("Hidden", "pbHidden")
            .field(&Values::hidden, "H")
            .reports(vndHidden),
        property<&vnLine::OrigAdjustable, &vnLine::SetOrigAdjustable>("OrigAdjustable",
                                                                      "pbOrigAdjustable")
            .field(&Values::orig_adjustable, "OA")
            .reports(vndOrigAdjustable),
        property<&vnLine::DestAdjustable, &vnLine::SetDestAdjustable>("DestAdjustable",
                                                                      "pbDestAdjustable")
            .field(&Values::dest_adjustable, "DA")
            .reports(vndDestAdjustable),
        property<&vnLine::Rigid, &vnLine::SetRigid>("Rigid", "pbRigid")
            .field(&Values::rigid, "R")
            .reports(vndRigid),
        property<&vnLine::BackMode, &vnLine::SetBackMode>("BackMode", "plBackMode")
            .field(&Values::back_mode, "BM")
            .missing(2)
            .reports(vndBackMode),
        property<&vnLine::LinkStyle, &vnLine::SetLinkStyle>("LinkStyle", "plLinkStyle")
            .field(&Values::link_style, "LS")
            .reports(vndLinkStyle),
        property<&vnLine::ArrowDest, &vnLine::SetArrowDest>("ArrowDest", "plArrowDest")
            .field(&Values::arrow_dest, "AD")
            .missing(3)
            .reports(vndArrowDest),
        property<&vnLine::ArrowOrig, &vnLine::SetArrowOrig>("ArrowOrig", "plArrowOrig")
            .field(&Values::arrow_orig, "AO")
            .reports(vndArrowOrig),
        property<&vnLine::ArrowMid, &vnLine::SetArrowMid>("ArrowMid", "plArrowMid")
            .field(&Values::arrow_mid, "AM")
            .reports(vndArrowMid),
        property<&vnLine::ArrowDestSize, &vnLine::SetArrowDestSize>("ArrowDestSize",
                                                                    "plArrowDestSize")
            .field(&Values::arrow_dest_size, "ADS")
            .reports(vndArrowDestSize),
        property<&vnLine::ArrowOrigSize, &vnLine::SetArrowOrigSize>("ArrowOrigSize",
                                                                    "plArrowOrigSize")
            .field(&Values::arrow_orig_size, "AOS")
            .reports(vndArrowOrigSize),
        property<&vnLine::ArrowMidSize, &vnLine::SetArrowMidSize>("ArrowMidSize", "plArrowMidSize")
            .field(&Values::arrow_mid_size, "AMS")
            .reports(vndArrowMidSize),
        property<&vnLine::DrawStyle, &vnLine::SetDrawStyle>("DrawStyle", "plDrawStyle")
            .field(&Values::draw_style, "DS")
            .reports(vndDrawStyle),
        property<&vnLine::DrawWidth, &vnLine::SetDrawWidth>("DrawWidth", "plDrawWidth")
            .field(&Values::draw_width, "DW")
            .missing(1)
            .reports(vndDrawWidth),
        property<&vnLine::ShowJump, &vnLine::SetShowJump>("ShowJump", "plShowJump")
            .field(&Values::show_jump, "SJ")
            .missing(-1)
            .reports(vndShowJump),
        property<&vnLine::TextSegment, &vnLine::SetTextSegment>("TextSegment", "plTextSegment")
            .field(&Values::text_segment, "TS")
            .reports(vndTextSegment),
        property<&vnLine::DrawColour, &vnLine::SetDrawColour>("DrawColour", "plDrawColour")
            .field(&Values::draw_colour, "DC")
            .reports(vndDrawColour),
        property<&vnLine::ForeColour, &vnLine::SetForeColour>("ForeColour", "plForeColour")
            .field(&Values::fore_colour, "FC")
            .reports(vndForeColour),
        property<&vnLine::UserData, &vnLine::SetUserData>("UserData", "plUserData")
            .field(&Values::user_data, "UD")
            .reports(vndUserData),
        property<&vnLine::Font, &vnLine::SetFont>("Font", "poFont")
            .own_entry("F", &vnLine::WriteFont, &vnLine::LoadFont),
        property<&vnLine::OrigX, &vnLine::SetOrigX>("OrigX", "plOrigX")
            .field(&Values::orig_x, "OX")
            .reports(vndOrigX),
        property<&vnLine::OrigY, &vnLine::SetOrigY>("OrigY", "plOrigY")
            .field(&Values::orig_y, "OY")
            .reports(vndOrigY),
        property<&vnLine::DestX, &vnLine::SetDestX>("DestX", "plDestX")
            .field(&Values::dest_x, "DX")
            .reports(vndDestX),
        property<&vnLine::DestY, &vnLine::SetDestY>("DestY", "plDestY")
            .field(&Values::dest_y, "DY")
            .reports(vndDestY),
        property<&vnLine::ExtraPointX, &vnLine::SetExtraPointX>("ExtraPointX", "plIndex", "plValue")
            .numbered_by(&PointNumbers),
        property<&vnLine::ExtraPointY, &vnLine::SetExtraPointY>("ExtraPointY", "plIndex", "plValue")
            .numbered_by(&PointNumbers),
        property<&vnLine::ExtraPointCount, &vnLine::SetExtraPointCount>("ExtraPointCount",
                                                                        "plExtraPointCount")
            .own_entry("EPC", &vnLine::WritePoints, &vnLine::ReadPoints),
        property<&vnLine::UpdateExtraPoints, &vnLine::SetUpdateExtraPoints>("UpdateExtraPoints",
                                                                            "pbUpdateExtraPoints")
            .hidden()
            .not_content("a setting of the host's"),
    };
  }();
  // In every file: never change it.
  static constexpr std::string_view kFileOrder[] = {
      "AD", "ADS", "AM", "AMS", "AO", "AOS", "BM", "DA", "DFI", "DX", "DY",  "DC",
      "DS", "DW",  "F",  "FC",  "H",  "LS",  "L",  "M",  "OT",  "OA", "OFI", "OX",
      "OY", "OD",  "R",  "S",   "SJ", "Stc", "TS", "UD", "ZOI", "EPC"};
};

automation::Object* vnLine::FindParent() const { return OwnerOrDocument(link_.get()); }

automation::Ref<vnLink> vnLine::Link() const { return link_.get(); }

void vnLine::SetLink(vnLink* poLink) {
  link_ = poLink;
  ParentChanged();
}

template <class T>
void vnLine::Put(T Values::*member, const T& value) {
  ReportChange(schema::Store<Schema>(values_, member, value));
}
template void vnLine::Put(bool Values::*, const bool&);
template void vnLine::Put(int32_t Values::*, const int32_t&);

// A host's handler may let go of this line.
void vnLine::ReportChange(int32_t detail_id) {
  Scope* const scope = document_scope();
  vnLink* const link = link_.get();
  if (scope != nullptr && link != nullptr) {
    scope->Report<&DocumentListener::LinkChange>(*link, detail_id);
  }
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

void vnLine::Write(bag::BagWriter& writer) { schema::WriteEntries<Schema>(writer, *this, values_); }

// Unlike a figure or the chart, a line that nobody loaded has no font to save: error 91.
void vnLine::WriteFont(bag::BagWriter& writer) { WriteFontText(writer, *font_); }
void vnLine::LoadFont(bag::BagReader& reader) {
  const automation::Ref<automation::Font> font = automation::services().make_font();
  automation::WriteFont(*font, ReadFontText(reader));
  font_ = font.get();
}

void vnLine::WritePoints(bag::BagWriter& writer) {
  writer.Add("EPC", ExtraPointCount());
  for (const int32_t index : ExtraPointNumbers()) {
    const std::string number = std::to_string(index);
    const Point& point = PointAt(index);
    writer.Add(std::string(kPointX) + number, point.x);
    writer.Add(std::string(kPointY) + number, point.y);
  }
}

std::vector<int32_t> vnLine::ExtraPointNumbers() const {
  std::vector<int32_t> numbers(static_cast<size_t>(std::min(point_count_, kSavedUnset)));
  std::iota(numbers.begin(), numbers.end(), 1);
  for (auto set = points_.upper_bound(kSavedUnset); set != points_.end(); ++set) {
    numbers.push_back(set->first);
  }
  return numbers;
}

void vnLine::Read(const bag::KeptText& text) {
  bag::BagReader reader(text);
  schema::ReadEntries<Schema>(reader, *this, values_);
}

// Goes by the entries that there are: a count that no text backs takes neither time nor memory.
void vnLine::ReadPoints(bag::BagReader& reader) {
  point_count_ = std::clamp(reader.GetLong("EPC"), 0, kMaxCount);
  points_.clear();
  reader.VisitUnasked([&](const bag::BagEntry& entry) {
    const bool is_x = entry.key.starts_with(kPointX);
    if (!is_x && !entry.key.starts_with(kPointY)) return false;
    const int32_t number = PointNumber(entry.key.substr(kPointX.size()));
    if (number >= 1 && number <= point_count_) {
      Point& point = points_[number];
      (is_x ? point.x : point.y) = reader.LongOf(entry);
    }
    return number >= 1;
  });
}

void vnLine::CopyFrom(const vnLine& other) {
  values_ = other.values_;
  font_ = CopyFont(other.font_.get()).get();
  point_count_ = other.point_count_;
  points_ = other.points_;
}

const automation::ClassInfo& vnLine::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnLine>(
      "vnLine", "The drawn connector of a link.",
      {0x0264DBF2, 0x3B99, 0x477C, {0x8D, 0x32, 0x8D, 0x2F, 0xEC, 0xAE, 0x46, 0x39}},
      {0xCDCE5D90, 0xCA08, 0x4E4C, {0xAB, 0xC1, 0x78, 0x58, 0x7C, 0xCB, 0x27, 0x25}},
      Schema::kRows);
  return info;
}

}  // namespace vndoc6
