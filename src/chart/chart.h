// vnChart: the drawing settings of a document's chart as a whole.
#pragma once

#include <cstdint>

#include "automation/font.h"
#include "automation/object.h"
#include "automation/picture.h"
#include "common/bag_writer.h"
#include "common/kept_text.h"
#include "core/member.h"

namespace vndoc6 {

// The plain values of a chart. One made by a host has zeros throughout; a document's has the
// defaults in chart.cpp, for it was loaded.
struct ChartValues {
  int32_t back_colour = 0;
  int32_t shadow_colour = 0;
  bool show_grid = false;
  bool snap_to_grid = false;
  bool show_tool_tip = false;
  bool hidden = false;
  bool transparent = false;
  bool ellipsis = false;
  int32_t edit_mode = 0;
  int32_t back_mode = 0;
  bool shadow = false;
  int32_t shape = 0;
  int32_t alignment = 0;
  int32_t auto_size = 0;
  int32_t picture_position = 0;
  int32_t shape_orientation = 0;
  int32_t draw_style = 0;
  int32_t draw_width = 0;
  bool oriented_text = false;
  bool orthogonal_dynamic = false;
  bool adjust_orig = false;
  bool adjust_dest = false;
  int32_t arrow_orig = 0;
  int32_t arrow_dest = 0;
  int32_t arrow_mid = 0;
  int32_t arrow_orig_size = 0;
  int32_t arrow_dest_size = 0;
  int32_t arrow_mid_size = 0;
  int32_t show_jump = 0;
  int32_t fill_colour = 0;
  int32_t draw_colour = 0;
  int32_t fore_colour = 0;
  int32_t grid_size_x = 0;
  int32_t grid_size_y = 0;
  int32_t shadow_offset_x = 0;
  int32_t shadow_offset_y = 0;
  bool show_step_index = false;
  Text step_index_separator;
  Text chart_picture_hex;
  int32_t chart_width = 0;
  int32_t chart_height = 0;
  Text sequence_seperator;
  int32_t page_height = 0;
  int32_t page_width = 0;
  bool show_page_margins = false;
  int32_t page_margins_colour = 0;
  int32_t link_style = 0;
  int32_t grid_colour = 0;
};

// Every put stores its value as it is and then reports its number (vndBackColour and so on) as a
// change of the chart, unless its comment says more. Extents are in the host's drawing units,
// colours hold red in the low byte, and codes mean what the drawing host means by them. Nothing
// here reaches into figures and lines: what they have in common with the chart is what a host
// offers as the standard look.
class vnChart : public Member {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // Stored as 0 it reads as white (16777215), and is white from then on.
  int32_t BackColour();
  void SetBackColour(int32_t plBackColour) { Put(&Values::back_colour, plBackColour); }
  int32_t ShadowColour() const { return values_.shadow_colour; }
  void SetShadowColour(int32_t plShadowColour) { Put(&Values::shadow_colour, plShadowColour); }
  bool ShowGrid() const { return values_.show_grid; }
  void SetShowGrid(bool pbShowGrid) { Put(&Values::show_grid, pbShowGrid); }
  bool SnapToGrid() const { return values_.snap_to_grid; }
  void SetSnapToGrid(bool pbSnapToGrid) { Put(&Values::snap_to_grid, pbSnapToGrid); }
  bool ShowToolTip() const { return values_.show_tool_tip; }
  void SetShowToolTip(bool pbShowToolTip) { Put(&Values::show_tool_tip, pbShowToolTip); }
  bool Hidden() const { return values_.hidden; }
  void SetHidden(bool pbHidden) { Put(&Values::hidden, pbHidden); }
  bool Transparent() const { return values_.transparent; }
  // Reports the new value as a number, -1 or 0, in place of vndTransparent.
  void SetTransparent(bool pbTransparent);
  bool Ellipsis() const { return values_.ellipsis; }
  void SetEllipsis(bool pbEllipsis) { Put(&Values::ellipsis, pbEllipsis); }
  int32_t EditMode() const { return values_.edit_mode; }
  void SetEditMode(int32_t plEditMode) { Put(&Values::edit_mode, plEditMode); }
  int32_t BackMode() const { return values_.back_mode; }
  void SetBackMode(int32_t plBackMode) { Put(&Values::back_mode, plBackMode); }
  bool Shadow() const { return values_.shadow; }
  void SetShadow(bool pbShadow) { Put(&Values::shadow, pbShadow); }
  int32_t Shape() const { return values_.shape; }
  void SetShape(int32_t plShape) { Put(&Values::shape, plShape); }
  int32_t Alignment() const { return values_.alignment; }
  void SetAlignment(int32_t plAlignment) { Put(&Values::alignment, plAlignment); }
  int32_t AutoSize() const { return values_.auto_size; }
  void SetAutoSize(int32_t plAutoSize) { Put(&Values::auto_size, plAutoSize); }
  int32_t PicturePosition() const { return values_.picture_position; }
  void SetPicturePosition(int32_t plPicturePosition) {
    Put(&Values::picture_position, plPicturePosition);
  }
  int32_t ShapeOrientation() const { return values_.shape_orientation; }
  void SetShapeOrientation(int32_t plShapeOrientation) {
    Put(&Values::shape_orientation, plShapeOrientation);
  }
  int32_t DrawStyle() const { return values_.draw_style; }
  void SetDrawStyle(int32_t plDrawStyle) { Put(&Values::draw_style, plDrawStyle); }
  int32_t DrawWidth() const { return values_.draw_width; }
  void SetDrawWidth(int32_t plDrawWidth) { Put(&Values::draw_width, plDrawWidth); }
  bool OrientedText() const { return values_.oriented_text; }
  void SetOrientedText(bool pbOrientedText) { Put(&Values::oriented_text, pbOrientedText); }
  bool OrthogonalDynamic() const { return values_.orthogonal_dynamic; }
  void SetOrthogonalDynamic(bool pbOrthogonalDynamic) {
    Put(&Values::orthogonal_dynamic, pbOrthogonalDynamic);
  }
  bool AdjustOrig() const { return values_.adjust_orig; }
  void SetAdjustOrig(bool pbAdjustOrig) { Put(&Values::adjust_orig, pbAdjustOrig); }
  bool AdjustDest() const { return values_.adjust_dest; }
  void SetAdjustDest(bool pbAdjustDest) { Put(&Values::adjust_dest, pbAdjustDest); }

  int32_t ArrowOrig() const { return values_.arrow_orig; }
  void SetArrowOrig(int32_t plArrowOrig) { Put(&Values::arrow_orig, plArrowOrig); }
  int32_t ArrowDest() const { return values_.arrow_dest; }
  void SetArrowDest(int32_t plArrowDest) { Put(&Values::arrow_dest, plArrowDest); }
  int32_t ArrowMid() const { return values_.arrow_mid; }
  void SetArrowMid(int32_t plArrowMid) { Put(&Values::arrow_mid, plArrowMid); }
  int32_t ArrowOrigSize() const { return values_.arrow_orig_size; }
  void SetArrowOrigSize(int32_t plArrowOrigSize) { Put(&Values::arrow_orig_size, plArrowOrigSize); }
  // Reports vndArrowOrigSize.
  int32_t ArrowDestSize() const { return values_.arrow_dest_size; }
  void SetArrowDestSize(int32_t plArrowDestSize) { Put(&Values::arrow_dest_size, plArrowDestSize); }
  int32_t ArrowMidSize() const { return values_.arrow_mid_size; }
  void SetArrowMidSize(int32_t plArrowMidSize) { Put(&Values::arrow_mid_size, plArrowMidSize); }
  int32_t ShowJump() const { return values_.show_jump; }
  void SetShowJump(int32_t plShowJump) { Put(&Values::show_jump, plShowJump); }
  int32_t FillColour() const { return values_.fill_colour; }
  void SetFillColour(int32_t plFillColour) { Put(&Values::fill_colour, plFillColour); }
  int32_t DrawColour() const { return values_.draw_colour; }
  void SetDrawColour(int32_t plDrawColour) { Put(&Values::draw_colour, plDrawColour); }
  int32_t ForeColour() const { return values_.fore_colour; }
  void SetForeColour(int32_t plForeColour) { Put(&Values::fore_colour, plForeColour); }

  // Never Nothing. Changing this object's properties changes the chart's font and reports nothing.
  automation::Ref<automation::Font> Font();
  // The object itself becomes the chart's font.
  void SetFont(automation::Font* poFont);

  int32_t GridSizeX() const { return values_.grid_size_x; }
  void SetGridSizeX(int32_t plGridSizeX) { Put(&Values::grid_size_x, plGridSizeX); }
  int32_t GridSizeY() const { return values_.grid_size_y; }
  void SetGridSizeY(int32_t plGridSizeY) { Put(&Values::grid_size_y, plGridSizeY); }
  // Saved, but a load gives 120 all the same.
  int32_t ShadowOffsetX() const { return values_.shadow_offset_x; }
  void SetShadowOffsetX(int32_t plShadowOffsetX) { Put(&Values::shadow_offset_x, plShadowOffsetX); }
  int32_t ShadowOffsetY() const { return values_.shadow_offset_y; }
  void SetShadowOffsetY(int32_t plShadowOffsetY) { Put(&Values::shadow_offset_y, plShadowOffsetY); }
  bool ShowStepIndex() const { return values_.show_step_index; }
  void SetShowStepIndex(bool pbShowStepIndex) { Put(&Values::show_step_index, pbShowStepIndex); }
  const Text& StepIndexSeparator() const { return values_.step_index_separator; }
  void SetStepIndexSeparator(const Text& psStepIndexSeparator) {
    Put(&Values::step_index_separator, psStepIndexSeparator);
  }

  // Nothing when there is none.
  automation::Ref<automation::Picture> Picture() const { return picture_.get(); }
  void SetPicture(automation::Picture* poPicture);
  // The host's picture in hexadecimal; any text.
  const Text& ChartPictureHEX() const { return values_.chart_picture_hex; }
  void SetChartPictureHEX(const Text& psChartPictureHEX) {
    Put(&Values::chart_picture_hex, psChartPictureHEX);
  }
  int32_t ChartWidth() const { return values_.chart_width; }
  void SetChartWidth(int32_t plChartWidth) { Put(&Values::chart_width, plChartWidth); }
  int32_t ChartHeight() const { return values_.chart_height; }
  void SetChartHeight(int32_t plChartHeight) { Put(&Values::chart_height, plChartHeight); }
  const Text& SequenceSeperator() const { return values_.sequence_seperator; }
  void SetSequenceSeperator(const Text& psSequenceSeperator) {
    Put(&Values::sequence_seperator, psSequenceSeperator);
  }

  // Stored as 0 either reads as 3000, and is 3000 from then on.
  int32_t PageHeight();
  void SetPageHeight(int32_t plPageHeight) { Put(&Values::page_height, plPageHeight); }
  int32_t PageWidth();
  void SetPageWidth(int32_t plPageWidth) { Put(&Values::page_width, plPageWidth); }
  bool ShowPageMargins() const { return values_.show_page_margins; }
  void SetShowPageMargins(bool pbShowPageMargins) {
    Put(&Values::show_page_margins, pbShowPageMargins);
  }
  // Stored as 0 it reads as a light grey (14737632), and is that from then on. A load gives -1 when
  // the margins are shown, the grey when they are not.
  int32_t PageMarginsColour();
  void SetPageMarginsColour(int32_t plPageMarginsColour) {
    Put(&Values::page_margins_colour, plPageMarginsColour);
  }
  int32_t LinkStyle() const { return values_.link_style; }
  void SetLinkStyle(int32_t plLinkStyle) { Put(&Values::link_style, plLinkStyle); }
  int32_t GridColour() const { return values_.grid_colour; }
  void SetGridColour(int32_t plGridColour) { Put(&Values::grid_colour, plGridColour); }

  // --- Inside the library; hosts have no use for these. ---
  void InternalWrite(common::BagWriter& writer);
  // Reports nothing.
  void InternalLoad(const common::KeptText& text);

 private:
  using Values = ChartValues;
  template <class T>
  void Put(T Values::*member, const T& value);
  void ReportChange(int32_t detail_id);
  int32_t Substituted(int32_t Values::*member, int32_t value);

  Values values_;
  automation::Owned<automation::Font> font_;
  automation::Owned<automation::Picture> picture_;
};

}  // namespace vndoc6
