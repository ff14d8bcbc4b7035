#include "vndoc6/chart/chart.h"

#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "chart/font_text.h"
#include "core/scope.h"
#include "schema/rows.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/chart/shapes.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {
namespace {

constexpr int32_t kWhite = 0xFFFFFF;
constexpr int32_t kMarginsGrey = 0xE0E0E0;
constexpr int32_t kPageExtent = 3000;

}  // namespace

struct vnChart::Schema {
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnChart::Document>("Document").not_content("leads back to the root"),
        property<&vnChart::BackColour, &vnChart::SetBackColour>("BackColour", "plBackColour")
            .field(&Values::back_colour, "BC")
            .missing(kWhite)
            .reports(vndBackColour),
        property<&vnChart::ShadowColour, &vnChart::SetShadowColour>("ShadowColour",
                                                                    "plShadowColour")
            .field(&Values::shadow_colour, "SC")
            .missing(0xC0C0C0)
            .reports(vndShadowColour),
        property<&vnChart::ShowGrid, &vnChart::SetShowGrid>("ShowGrid", "pbShowGrid")
            .field(&Values::show_grid, "SG")
            .missing(true)
            .reports(vndShowGrid),
        property<&vnChart::SnapToGrid, &vnChart::SetSnapToGrid>("SnapToGrid", "pbSnapToGrid")
            .field(&Values::snap_to_grid, "STG")
            .missing(true)
            .reports(vndSnapToGrid),
        property<&vnChart::ShowToolTip, &vnChart::SetShowToolTip>("ShowToolTip", "pbShowToolTip")
            .field(&Values::show_tool_tip, "STT")
            .missing(true)
            .reports(vndShowToolTip),
        property<&vnChart::Hidden, &vnChart::SetHidden>("Hidden", "pbHidden")
            .field(&Values::hidden, "H")
            .reports(vndHidden),
        property<&vnChart::Transparent, &vnChart::SetTransparent>("Transparent", "pbTransparent")
            .field(&Values::transparent, "Tr"),
        property<&vnChart::Ellipsis, &vnChart::SetEllipsis>("Ellipsis", "pbEllipsis")
            .field(&Values::ellipsis, "E")
            .reports(vndEllipsis),
        property<&vnChart::EditMode, &vnChart::SetEditMode>("EditMode", "plEditMode")
            .field(&Values::edit_mode, "EM")
            .reports(vndEditMode),
        property<&vnChart::BackMode, &vnChart::SetBackMode>("BackMode", "plBackMode")
            .field(&Values::back_mode, "BM")
            .missing(2)
            .reports(vndBackMode),
        property<&vnChart::Shadow, &vnChart::SetShadow>("Shadow", "pbShadow")
            .field(&Values::shadow, "S")
            .reports(vndShadow),
        property<&vnChart::Shape, &vnChart::SetShape>("Shape", "plShape")
            .field(&Values::shape, "Sh")
            .missing(vnsProcess)
            .reports(vndShape),
        property<&vnChart::Alignment, &vnChart::SetAlignment>("Alignment", "plAlignment")
            .field(&Values::alignment, "A")
            .missing(7)
            .reports(vndAlignment),
        property<&vnChart::AutoSize, &vnChart::SetAutoSize>("AutoSize", "plAutoSize")
            .field(&Values::auto_size, "AS")
            .reports(vndAutoSize),
        property<&vnChart::PicturePosition, &vnChart::SetPicturePosition>("PicturePosition",
                                                                          "plPicturePosition")
            .field(&Values::picture_position, "PicP")
            .missing(9)
            .reports(vndPicturePosition),
        property<&vnChart::ShapeOrientation, &vnChart::SetShapeOrientation>("ShapeOrientation",
                                                                            "plShapeOrientation")
            .field(&Values::shape_orientation, "ShO")
            .reports(vndShapeOrientation),
        property<&vnChart::DrawStyle, &vnChart::SetDrawStyle>("DrawStyle", "plDrawStyle")
            .field(&Values::draw_style, "DS")
            .reports(vndDrawStyle),
        property<&vnChart::DrawWidth, &vnChart::SetDrawWidth>("DrawWidth", "plDrawWidth")
            .field(&Values::draw_width, "DW")
            .missing(1)
            .reports(vndDrawWidth),
        property<&vnChart::OrientedText, &vnChart::SetOrientedText>("OrientedText",
                                                                    "pbOrientedText")
            .field(&Values::oriented_text, "OT")
            .reports(vndOrientedText),
        property<&vnChart::OrthogonalDynamic, &vnChart::SetOrthogonalDynamic>("OrthogonalDynamic",
                                                                              "pbOrthogonalDynamic")
            .field(&Values::orthogonal_dynamic, "OD")
            .reports(vndOrthogonalDynamic),
        property<&vnChart::AdjustOrig, &vnChart::SetAdjustOrig>("AdjustOrig", "pbAdjustOrig")
            .field(&Values::adjust_orig, "AO")
            .missing(true)
            .reports(vndAdjustOrig),
        property<&vnChart::AdjustDest, &vnChart::SetAdjustDest>("AdjustDest", "pbAdjustDest")
            .field(&Values::adjust_dest, "AD")
            .missing(true)
            .reports(vndAdjustDest),
        property<&vnChart::ArrowOrig, &vnChart::SetArrowOrig>("ArrowOrig", "plArrowOrig")
            .field(&Values::arrow_orig, "ArO")
            .reports(vndArrowOrig),
        property<&vnChart::ArrowDest, &vnChart::SetArrowDest>("ArrowDest", "plArrowDest")
            .field(&Values::arrow_dest, "ArD")
            .missing(3)
            .reports(vndArrowDest),
        property<&vnChart::ArrowMid, &vnChart::SetArrowMid>("ArrowMid", "plArrowMid")
            .field(&Values::arrow_mid, "ArM")
            .reports(vndArrowMid),
        property<&vnChart::ArrowOrigSize, &vnChart::SetArrowOrigSize>("ArrowOrigSize",
                                                                      "plArrowOrigSize")
            .field(&Values::arrow_orig_size, "ArOS")
            .reports(vndArrowOrigSize),

        // Hosts have always been told of the other end here.
        property<&vnChart::ArrowDestSize, &vnChart::SetArrowDestSize>("ArrowDestSize",
                                                                      "plArrowDestSize")
            .field(&Values::arrow_dest_size, "ArDS")
            .reports(vndArrowOrigSize),
        property<&vnChart::ArrowMidSize, &vnChart::SetArrowMidSize>("ArrowMidSize",
                                                                    "plArrowMidSize")
            .field(&Values::arrow_mid_size, "ArMS")
            .reports(vndArrowMidSize),
        property<&vnChart::ShowJump, &vnChart::SetShowJump>("ShowJump", "plShowJump")
            .field(&Values::show_jump, "SJ")
            .reports(vndShowJump),
        property<&vnChart::FillColour, &vnChart::SetFillColour>("FillColour", "plFillColour")
            .field(&Values::fill_colour, "FlC")
            .missing(kWhite)
            .reports(vndFillColour),
        property<&vnChart::DrawColour, &vnChart::SetDrawColour>("DrawColour", "plDrawColour")
            .field(&Values::draw_colour, "DC")
            .reports(vndDrawColour),
        property<&vnChart::ForeColour, &vnChart::SetForeColour>("ForeColour", "plForeColour")
            .field(&Values::fore_colour, "FC")
            .reports(vndForeColour),
        property<&vnChart::Font, &vnChart::SetFont>("Font", "poFont")
            .own_entry("F", &vnChart::WriteFont, &vnChart::LoadFont),
        property<&vnChart::GridSizeX, &vnChart::SetGridSizeX>("GridSizeX", "plGridSizeX")
            .field(&Values::grid_size_x, "GSX")
            .missing(360)
            .reports(vndGridSizeX),
        property<&vnChart::GridSizeY, &vnChart::SetGridSizeY>("GridSizeY", "plGridSizeY")
            .field(&Values::grid_size_y, "GSY")
            .missing(360)
            .reports(vndGridSizeY),

        // Hosts rely on every load setting the offset to 120: no file of theirs has "SOfftX".
        property<&vnChart::ShadowOffsetX, &vnChart::SetShadowOffsetX>("ShadowOffsetX",
                                                                      "plShadowOffsetX")
            .field(&Values::shadow_offset_x, "SOffX")
            .missing(120)
            .read_as("SOfftX")
            .reports(vndShadowOffSetX),
        property<&vnChart::ShadowOffsetY, &vnChart::SetShadowOffsetY>("ShadowOffsetY",
                                                                      "plShadowOffsetY")
            .field(&Values::shadow_offset_y, "SOffY")
            .missing(120)
            .reports(vndShadowOffsetY),
        property<&vnChart::ShowStepIndex, &vnChart::SetShowStepIndex>("ShowStepIndex",
                                                                      "pbShowStepIndex")
            .field(&Values::show_step_index, "STI")
            .missing(true)
            .reports(vndShowStepIndex),
        property<&vnChart::StepIndexSeparator, &vnChart::SetStepIndexSeparator>(
            "StepIndexSeparator", "psStepIndexSeparator")
            .field(&Values::step_index_separator, "TIS")
            .missing(u" - ")
            .reports(vndStepIndexSeparator),
        property<&vnChart::Picture, &vnChart::SetPicture>("Picture", "poPicture")
            .own_entry("Pic", &vnChart::WritePicture, &vnChart::LoadPicture),
        property<&vnChart::ChartPictureHEX, &vnChart::SetChartPictureHEX>("ChartPictureHEX",
                                                                          "psChartPictureHEX")
            .field(&Values::chart_picture_hex, "CPHEX")
            .reports(vndChartPictureHEX),
        property<&vnChart::ChartWidth, &vnChart::SetChartWidth>("ChartWidth", "plChartWidth")
            .field(&Values::chart_width, "CW")
            .reports(vndChartWidth),
        property<&vnChart::ChartHeight, &vnChart::SetChartHeight>("ChartHeight", "plChartHeight")
            .field(&Values::chart_height, "CH")
            .reports(vndChartHeight),
        property<&vnChart::SequenceSeperator, &vnChart::SetSequenceSeperator>("SequenceSeperator",
                                                                              "psSequenceSeperator")
            .field(&Values::sequence_seperator, "SS")
            .missing(u" - ")
            .reports(vndSequenceSeperator),
        property<&vnChart::PageHeight, &vnChart::SetPageHeight>("PageHeight", "plPageHeight")
            .field(&Values::page_height, "PH")
            .reports(vndPageHeight),
        property<&vnChart::PageWidth, &vnChart::SetPageWidth>("PageWidth", "plPageWidth")
            .field(&Values::page_width, "PW")
            .reports(vndPageWidth),
        property<&vnChart::ShowPageMargins>("ShowPageMargins"),

        // Read from the flag above: hosts rely on a loaded colour being -1 with margins shown, and
        // the substituted one without.
        property<&vnChart::PageMarginsColour, &vnChart::SetPageMarginsColour>("PageMarginsColour",
                                                                              "plPageMarginsColour")
            .field(&Values::page_margins_colour, "PMC")
            .missing(kMarginsGrey)
            .read_as("SPM")
            .reports(vndPageMarginsColour),
        put<&vnChart::SetShowPageMargins>("ShowPageMargins", "pbShowPageMargins")
            .field(&Values::show_page_margins, "SPM")
            .reports(vndShowPageMargin),
        property<&vnChart::LinkStyle, &vnChart::SetLinkStyle>("LinkStyle", "plLinkStyle")
            .field(&Values::link_style, "LS")
            .reports(vndLinkStyle),
        property<&vnChart::GridColour, &vnChart::SetGridColour>("GridColour", "plGridColour")
            .field(&Values::grid_colour, "GC")
            .reports(vndGridColour),
    };
  }();
  // In every file: never change it.
  static constexpr std::string_view kFileOrder[] = {
      "AD",   "AO",  "A",     "ArD", "ArDS",  "ArM",   "ArMS", "ArO", "ArOS", "AS",
      "BC",   "BM",  "CPHEX", "CH",  "CW",    "DC",    "DS",   "DW",  "EM",   "E",
      "FlC",  "F",   "FC",    "GC",  "GSX",   "GSY",   "H",    "OT",  "OD",   "Pic",
      "PicP", "SS",  "S",     "SC",  "SOffX", "SOffY", "Sh",   "ShO", "SG",   "SJ",
      "STI",  "STT", "STG",   "TIS", "Tr",    "PH",    "PW",   "SPM", "PMC",  "LS"};
};

template <class T>
void vnChart::Put(T Values::*member, const T& value) {
  ReportChange(schema::Store<Schema>(values_, member, value));
}
template void vnChart::Put(bool Values::*, const bool&);
template void vnChart::Put(int32_t Values::*, const int32_t&);
template void vnChart::Put(Text Values::*, const Text&);

// A host's handler may let go of this chart.
void vnChart::ReportChange(int32_t detail_id) {
  if (Scope* scope = document_scope()) {
    scope->Report<&DocumentListener::ChartChange>(*this, detail_id);
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

void vnChart::Write(bag::BagWriter& writer) {
  BackColour();  // alone of the four it is saved as it reads
  schema::WriteEntries<Schema>(writer, *this, values_);
}

void vnChart::Read(const bag::KeptText& text) {
  schema::ReadObject<Schema>(text, *this, values_, {});
}

void vnChart::WriteFont(bag::BagWriter& writer) { WriteFontText(writer, *Font()); }
void vnChart::LoadFont(bag::BagReader& reader) {
  automation::WriteFont(*Font(), ReadFontText(reader));
}

void vnChart::WritePicture(bag::BagWriter& writer) {
  if (picture_) writer.AddPicture("Pic", picture_->Bytes());
}
void vnChart::LoadPicture(bag::BagReader& reader) { picture_ = ReadPicture(reader, "Pic").get(); }

const automation::ClassInfo& vnChart::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnChart>(
      "vnChart", "The drawing settings of a document's chart as a whole.",
      {0x81B49EAE, 0x4E53, 0x4687, {0x99, 0x03, 0x46, 0xF6, 0x67, 0x49, 0x8C, 0x28}},
      {0x0385A7BF, 0x8FC2, 0x4B80, {0x8A, 0x13, 0x65, 0xCA, 0x57, 0x6B, 0x4C, 0x80}},
      Schema::kRows);
  return info;
}

}  // namespace vndoc6
