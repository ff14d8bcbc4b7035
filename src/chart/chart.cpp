#include "chart/chart.h"

#include "automation/describe.h"
#include "automation/services.h"
#include "bag/bag_reader.h"
#include "chart/field_table.h"
#include "chart/font_text.h"
#include "chart/shapes.h"
#include "core/detail_id.h"
#include "document/document.h"

namespace vndoc6 {
namespace {

using V = ChartValues;

constexpr int32_t kWhite = 0xFFFFFF;
constexpr int32_t kMarginsGrey = 0xE0E0E0;
constexpr int32_t kPageExtent = 3000;

// What stands before the font in the saved text, between font and picture, and after the picture.
constexpr std::tuple kToFont{
    row(&V::adjust_dest, "AD", true, vndAdjustDest),
    row(&V::adjust_orig, "AO", true, vndAdjustOrig),
    row(&V::alignment, "A", 7, vndAlignment),
    row(&V::arrow_dest, "ArD", 3, vndArrowDest),
    // Hosts have always been told of the other end here.
    row(&V::arrow_dest_size, "ArDS", 0, vndArrowOrigSize),
    row(&V::arrow_mid, "ArM", 0, vndArrowMid),
    row(&V::arrow_mid_size, "ArMS", 0, vndArrowMidSize),
    row(&V::arrow_orig, "ArO", 0, vndArrowOrig),
    row(&V::arrow_orig_size, "ArOS", 0, vndArrowOrigSize),
    row(&V::auto_size, "AS", 0, vndAutoSize),
    row(&V::back_colour, "BC", kWhite, vndBackColour),
    row(&V::back_mode, "BM", 2, vndBackMode),
    row(&V::chart_picture_hex, "CPHEX", u"", vndChartPictureHEX),
    row(&V::chart_height, "CH", 0, vndChartHeight),
    row(&V::chart_width, "CW", 0, vndChartWidth),
    row(&V::draw_colour, "DC", 0, vndDrawColour),
    row(&V::draw_style, "DS", 0, vndDrawStyle),
    row(&V::draw_width, "DW", 1, vndDrawWidth),
    row(&V::edit_mode, "EM", 0, vndEditMode),
    row(&V::ellipsis, "E", false, vndEllipsis),
    row(&V::fill_colour, "FlC", kWhite, vndFillColour),
};
constexpr std::tuple kToPicture{
    row(&V::fore_colour, "FC", 0, vndForeColour),
    row(&V::grid_colour, "GC", 0, vndGridColour),
    row(&V::grid_size_x, "GSX", 360, vndGridSizeX),
    row(&V::grid_size_y, "GSY", 360, vndGridSizeY),
    row(&V::hidden, "H", false, vndHidden),
    row(&V::oriented_text, "OT", false, vndOrientedText),
    row(&V::orthogonal_dynamic, "OD", false, vndOrthogonalDynamic),
};
constexpr std::tuple kFromPicture{
    row(&V::picture_position, "PicP", 9, vndPicturePosition),
    row(&V::sequence_seperator, "SS", u" - ", vndSequenceSeperator),
    row(&V::shadow, "S", false, vndShadow),
    row(&V::shadow_colour, "SC", 0xC0C0C0, vndShadowColour),
    // Hosts rely on every load setting the offset to 120: no file of theirs has "SOfftX".
    row(&V::shadow_offset_x, "SOffX", 120, vndShadowOffSetX).LoadedFrom("SOfftX"),
    row(&V::shadow_offset_y, "SOffY", 120, vndShadowOffsetY),
    row(&V::shape, "Sh", vnsProcess, vndShape),
    row(&V::shape_orientation, "ShO", 0, vndShapeOrientation),
    row(&V::show_grid, "SG", true, vndShowGrid),
    row(&V::show_jump, "SJ", 0, vndShowJump),
    row(&V::show_step_index, "STI", true, vndShowStepIndex),
    row(&V::show_tool_tip, "STT", true, vndShowToolTip),
    row(&V::snap_to_grid, "STG", true, vndSnapToGrid),
    row(&V::step_index_separator, "TIS", u" - ", vndStepIndexSeparator),
    row(&V::transparent, "Tr", false, 0 /* SetTransparent reports */),
    row(&V::page_height, "PH", 0, vndPageHeight),
    row(&V::page_width, "PW", 0, vndPageWidth),
    row(&V::show_page_margins, "SPM", false, vndShowPageMargin),
    // Read from the flag above: hosts rely on a loaded colour being -1 with margins shown, and the
    // substituted one without.
    row(&V::page_margins_colour, "PMC", kMarginsGrey, vndPageMarginsColour).LoadedFrom("SPM"),
    row(&V::link_style, "LS", 0, vndLinkStyle),
};
constexpr auto kFields = std::tuple_cat(kToFont, kToPicture, kFromPicture);

}  // namespace

template <class T>
void vnChart::Put(T Values::*member, const T& value) {
  values_.*member = value;
  ReportChange(DetailIdOf(kFields, member));
}
template void vnChart::Put(bool Values::*, const bool&);
template void vnChart::Put(int32_t Values::*, const int32_t&);
template void vnChart::Put(Text Values::*, const Text&);

// A host's handler may let go of this chart.
void vnChart::ReportChange(int32_t detail_id) {
  if (vnDocument* const document = InternalDocument()) {
    document->InternalChartChange(*this, detail_id);
  }
}

void vnChart::SetTransparent(bool pbTransparent) {
  values_.transparent = pbTransparent;
  // Hosts tell this change by the two numbers that no property has.
  ReportChange(pbTransparent ? -1 : 0);
}

// Hosts rely on never reading a 0 here, and on what they read being saved.
int32_t vnChart::Substituted(int32_t Values::*member, int32_t value) {
  if (values_.*member == 0) values_.*member = value;
  return values_.*member;
}

int32_t vnChart::BackColour() { return Substituted(&Values::back_colour, kWhite); }
int32_t vnChart::PageHeight() { return Substituted(&Values::page_height, kPageExtent); }
int32_t vnChart::PageWidth() { return Substituted(&Values::page_width, kPageExtent); }
int32_t vnChart::PageMarginsColour() {
  return Substituted(&Values::page_margins_colour, kMarginsGrey);
}

automation::Ref<automation::Font> vnChart::Font() {
  if (!font_) font_ = automation::services().make_font().get();
  return font_.get();
}

void vnChart::SetFont(automation::Font* poFont) {
  font_ = poFont;
  ReportChange(vndFont);
}

void vnChart::SetPicture(automation::Picture* poPicture) {
  picture_ = poPicture;
  ReportChange(vndPicture);
}

void vnChart::InternalWrite(bag::BagWriter& writer) {
  BackColour();  // alone of the four it is saved as it reads
  WriteFields(writer, kToFont, values_);
  WriteFontText(writer, *Font());
  WriteFields(writer, kToPicture, values_);
  if (picture_) writer.AddPicture("Pic", picture_->Bytes());
  WriteFields(writer, kFromPicture, values_);
}

void vnChart::InternalLoad(const bag::KeptText& text) {
  bag::BagReader reader(text);
  ReadFields(reader, kToFont, values_);
  automation::WriteFont(*Font(), ReadFontText(reader));
  ReadFields(reader, kToPicture, values_);
  picture_ = ReadPicture(reader, "Pic").get();
  ReadFields(reader, kFromPicture, values_);
}

const automation::ClassInfo& vnChart::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnChart>(
      "vnChart", "The drawing settings of a document's chart as a whole.",
      {0x81B49EAE, 0x4E53, 0x4687, {0x99, 0x03, 0x46, 0xF6, 0x67, 0x49, 0x8C, 0x28}},
      {0x0385A7BF, 0x8FC2, 0x4B80, {0x8A, 0x13, 0x65, 0xCA, 0x57, 0x6B, 0x4C, 0x80}},
      {
          get<&vnChart::Document>("Document"),
          get<&vnChart::BackColour>("BackColour"),
          put<&vnChart::SetBackColour>("BackColour", "plBackColour"),
          get<&vnChart::ShadowColour>("ShadowColour"),
          put<&vnChart::SetShadowColour>("ShadowColour", "plShadowColour"),
          get<&vnChart::ShowGrid>("ShowGrid"),
          put<&vnChart::SetShowGrid>("ShowGrid", "pbShowGrid"),
          get<&vnChart::SnapToGrid>("SnapToGrid"),
          put<&vnChart::SetSnapToGrid>("SnapToGrid", "pbSnapToGrid"),
          get<&vnChart::ShowToolTip>("ShowToolTip"),
          put<&vnChart::SetShowToolTip>("ShowToolTip", "pbShowToolTip"),
          get<&vnChart::Hidden>("Hidden"),
          put<&vnChart::SetHidden>("Hidden", "pbHidden"),
          get<&vnChart::Transparent>("Transparent"),
          put<&vnChart::SetTransparent>("Transparent", "pbTransparent"),
          get<&vnChart::Ellipsis>("Ellipsis"),
          put<&vnChart::SetEllipsis>("Ellipsis", "pbEllipsis"),
          get<&vnChart::EditMode>("EditMode"),
          put<&vnChart::SetEditMode>("EditMode", "plEditMode"),
          get<&vnChart::BackMode>("BackMode"),
          put<&vnChart::SetBackMode>("BackMode", "plBackMode"),
          get<&vnChart::Shadow>("Shadow"),
          put<&vnChart::SetShadow>("Shadow", "pbShadow"),
          get<&vnChart::Shape>("Shape"),
          put<&vnChart::SetShape>("Shape", "plShape"),
          get<&vnChart::Alignment>("Alignment"),
          put<&vnChart::SetAlignment>("Alignment", "plAlignment"),
          get<&vnChart::AutoSize>("AutoSize"),
          put<&vnChart::SetAutoSize>("AutoSize", "plAutoSize"),
          get<&vnChart::PicturePosition>("PicturePosition"),
          put<&vnChart::SetPicturePosition>("PicturePosition", "plPicturePosition"),
          get<&vnChart::ShapeOrientation>("ShapeOrientation"),
          put<&vnChart::SetShapeOrientation>("ShapeOrientation", "plShapeOrientation"),
          get<&vnChart::DrawStyle>("DrawStyle"),
          put<&vnChart::SetDrawStyle>("DrawStyle", "plDrawStyle"),
          get<&vnChart::DrawWidth>("DrawWidth"),
          put<&vnChart::SetDrawWidth>("DrawWidth", "plDrawWidth"),
          get<&vnChart::OrientedText>("OrientedText"),
          put<&vnChart::SetOrientedText>("OrientedText", "pbOrientedText"),
          get<&vnChart::OrthogonalDynamic>("OrthogonalDynamic"),
          put<&vnChart::SetOrthogonalDynamic>("OrthogonalDynamic", "pbOrthogonalDynamic"),
          get<&vnChart::AdjustOrig>("AdjustOrig"),
          put<&vnChart::SetAdjustOrig>("AdjustOrig", "pbAdjustOrig"),
          get<&vnChart::AdjustDest>("AdjustDest"),
          put<&vnChart::SetAdjustDest>("AdjustDest", "pbAdjustDest"),
          get<&vnChart::ArrowOrig>("ArrowOrig"),
          put<&vnChart::SetArrowOrig>("ArrowOrig", "plArrowOrig"),
          get<&vnChart::ArrowDest>("ArrowDest"),
          put<&vnChart::SetArrowDest>("ArrowDest", "plArrowDest"),
          get<&vnChart::ArrowMid>("ArrowMid"),
          put<&vnChart::SetArrowMid>("ArrowMid", "plArrowMid"),
          get<&vnChart::ArrowOrigSize>("ArrowOrigSize"),
          put<&vnChart::SetArrowOrigSize>("ArrowOrigSize", "plArrowOrigSize"),
          get<&vnChart::ArrowDestSize>("ArrowDestSize"),
          put<&vnChart::SetArrowDestSize>("ArrowDestSize", "plArrowDestSize"),
          get<&vnChart::ArrowMidSize>("ArrowMidSize"),
          put<&vnChart::SetArrowMidSize>("ArrowMidSize", "plArrowMidSize"),
          get<&vnChart::ShowJump>("ShowJump"),
          put<&vnChart::SetShowJump>("ShowJump", "plShowJump"),
          get<&vnChart::FillColour>("FillColour"),
          put<&vnChart::SetFillColour>("FillColour", "plFillColour"),
          get<&vnChart::DrawColour>("DrawColour"),
          put<&vnChart::SetDrawColour>("DrawColour", "plDrawColour"),
          get<&vnChart::ForeColour>("ForeColour"),
          put<&vnChart::SetForeColour>("ForeColour", "plForeColour"),
          get<&vnChart::Font>("Font"),
          putref<&vnChart::SetFont>("Font", "poFont"),
          get<&vnChart::GridSizeX>("GridSizeX"),
          put<&vnChart::SetGridSizeX>("GridSizeX", "plGridSizeX"),
          get<&vnChart::GridSizeY>("GridSizeY"),
          put<&vnChart::SetGridSizeY>("GridSizeY", "plGridSizeY"),
          get<&vnChart::ShadowOffsetX>("ShadowOffsetX"),
          put<&vnChart::SetShadowOffsetX>("ShadowOffsetX", "plShadowOffsetX"),
          get<&vnChart::ShadowOffsetY>("ShadowOffsetY"),
          put<&vnChart::SetShadowOffsetY>("ShadowOffsetY", "plShadowOffsetY"),
          get<&vnChart::ShowStepIndex>("ShowStepIndex"),
          put<&vnChart::SetShowStepIndex>("ShowStepIndex", "pbShowStepIndex"),
          get<&vnChart::StepIndexSeparator>("StepIndexSeparator"),
          put<&vnChart::SetStepIndexSeparator>("StepIndexSeparator", "psStepIndexSeparator"),
          get<&vnChart::Picture>("Picture"),
          putref<&vnChart::SetPicture>("Picture", "poPicture"),
          get<&vnChart::ChartPictureHEX>("ChartPictureHEX"),
          put<&vnChart::SetChartPictureHEX>("ChartPictureHEX", "psChartPictureHEX"),
          get<&vnChart::ChartWidth>("ChartWidth"),
          put<&vnChart::SetChartWidth>("ChartWidth", "plChartWidth"),
          get<&vnChart::ChartHeight>("ChartHeight"),
          put<&vnChart::SetChartHeight>("ChartHeight", "plChartHeight"),
          get<&vnChart::SequenceSeperator>("SequenceSeperator"),
          put<&vnChart::SetSequenceSeperator>("SequenceSeperator", "psSequenceSeperator"),
          get<&vnChart::PageHeight>("PageHeight"),
          put<&vnChart::SetPageHeight>("PageHeight", "plPageHeight"),
          get<&vnChart::PageWidth>("PageWidth"),
          put<&vnChart::SetPageWidth>("PageWidth", "plPageWidth"),
          // The puts of these two have always stood in the opposite order.
          get<&vnChart::ShowPageMargins>("ShowPageMargins"),
          get<&vnChart::PageMarginsColour>("PageMarginsColour"),
          put<&vnChart::SetPageMarginsColour>("PageMarginsColour", "plPageMarginsColour"),
          put<&vnChart::SetShowPageMargins>("ShowPageMargins", "pbShowPageMargins"),
          get<&vnChart::LinkStyle>("LinkStyle"),
          put<&vnChart::SetLinkStyle>("LinkStyle", "plLinkStyle"),
          get<&vnChart::GridColour>("GridColour"),
          put<&vnChart::SetGridColour>("GridColour", "plGridColour"),
      });
  return info;
}

}  // namespace vndoc6
