// vnChart: the drawing settings of a document's chart as a whole.
#pragma once

#include <cstdint>

#include "vndoc6/automation/font.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/core/member.h"

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
// offers as the standard look. "By default" says what a document's chart begins with.
class vnChart : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // The background's colour; white (16777215) by default. Stored as 0 it reads as white, and is
  // white from then on.
  int32_t BackColour();
  void SetBackColour(int32_t plBackColour) { Put(&Values::back_colour, plBackColour); }
  // The colour of shadows; a grey (12632256) by default.
  int32_t ShadowColour() const { return values_.shadow_colour; }
  void SetShadowColour(int32_t plShadowColour) { Put(&Values::shadow_colour, plShadowColour); }
  // Whether the host shows its grid; True by default.
  bool ShowGrid() const { return values_.show_grid; }
  void SetShowGrid(bool pbShowGrid) { Put(&Values::show_grid, pbShowGrid); }
  // Whether the host moves figures from one grid point to the next; True by default.
  bool SnapToGrid() const { return values_.snap_to_grid; }
  void SetSnapToGrid(bool pbSnapToGrid) { Put(&Values::snap_to_grid, pbSnapToGrid); }
  // Whether the host shows the tooltips of figures and links; True by default.
  bool ShowToolTip() const { return values_.show_tool_tip; }
  void SetShowToolTip(bool pbShowToolTip) { Put(&Values::show_tool_tip, pbShowToolTip); }
  // In the standard look: whether it is not drawn; False by default.
  bool Hidden() const { return values_.hidden; }
  void SetHidden(bool pbHidden) { Put(&Values::hidden, pbHidden); }
  // In the standard look: whether what lies behind shows through; False by default. A change
  // reports the new value as a number, -1 or 0, in place of vndTransparent.
  bool Transparent() const { return values_.transparent; }
  void SetTransparent(bool pbTransparent);
  // Whether texts that don't fit end in an ellipsis; False by default.
  bool Ellipsis() const { return values_.ellipsis; }
  void SetEllipsis(bool pbEllipsis) { Put(&Values::ellipsis, pbEllipsis); }
  // A code for how users edit texts on the chart; 0 by default.
  int32_t EditMode() const { return values_.edit_mode; }
  void SetEditMode(int32_t plEditMode) { Put(&Values::edit_mode, plEditMode); }
  // In the standard look: a code for what is behind texts and patterns; 2 by default.
  int32_t BackMode() const { return values_.back_mode; }
  void SetBackMode(int32_t plBackMode) { Put(&Values::back_mode, plBackMode); }
  // In the standard look: whether figures throw a shadow; False by default.
  bool Shadow() const { return values_.shadow; }
  void SetShadow(bool pbShadow) { Put(&Values::shadow, pbShadow); }
  // In the standard look: the figure's shape, a number of EnumVantrelShapes; vnsProcess (50) by
  // default.
  int32_t Shape() const { return values_.shape; }
  void SetShape(int32_t plShape) { Put(&Values::shape, plShape); }
  // In the standard look: a code for where the text stands in its figure; 7 by default.
  int32_t Alignment() const { return values_.alignment; }
  void SetAlignment(int32_t plAlignment) { Put(&Values::alignment, plAlignment); }
  // In the standard look: a code for how figure, text and picture fit each other; 0 by default.
  int32_t AutoSize() const { return values_.auto_size; }
  void SetAutoSize(int32_t plAutoSize) { Put(&Values::auto_size, plAutoSize); }
  // In the standard look: a code for where the picture stands in its figure; 9 by default.
  int32_t PicturePosition() const { return values_.picture_position; }
  void SetPicturePosition(int32_t plPicturePosition) {
    Put(&Values::picture_position, plPicturePosition);
  }
  // In the standard look: a code for how the shape is turned; 0 by default.
  int32_t ShapeOrientation() const { return values_.shape_orientation; }
  void SetShapeOrientation(int32_t plShapeOrientation) {
    Put(&Values::shape_orientation, plShapeOrientation);
  }
  // In the standard look: a code for the pen's pattern, solid or dashed; 0 by default.
  int32_t DrawStyle() const { return values_.draw_style; }
  void SetDrawStyle(int32_t plDrawStyle) { Put(&Values::draw_style, plDrawStyle); }
  // In the standard look: the pen's width; 1 by default.
  int32_t DrawWidth() const { return values_.draw_width; }
  void SetDrawWidth(int32_t plDrawWidth) { Put(&Values::draw_width, plDrawWidth); }
  // In the standard look: whether a line's text follows its direction; False by default.
  bool OrientedText() const { return values_.oriented_text; }
  void SetOrientedText(bool pbOrientedText) { Put(&Values::oriented_text, pbOrientedText); }
  // In the standard look: whether lines keep to right angles as figures move; False by default.
  bool OrthogonalDynamic() const { return values_.orthogonal_dynamic; }
  void SetOrthogonalDynamic(bool pbOrthogonalDynamic) {
    Put(&Values::orthogonal_dynamic, pbOrthogonalDynamic);
  }
  // In the standard look: whether a line's beginning follows the figure's outline; True by default.
  bool AdjustOrig() const { return values_.adjust_orig; }
  void SetAdjustOrig(bool pbAdjustOrig) { Put(&Values::adjust_orig, pbAdjustOrig); }
  // In the standard look: whether a line's end follows the figure's outline; True by default.
  bool AdjustDest() const { return values_.adjust_dest; }
  void SetAdjustDest(bool pbAdjustDest) { Put(&Values::adjust_dest, pbAdjustDest); }

  // In the standard look: a code for the arrow at a line's beginning; 0 by default.
  int32_t ArrowOrig() const { return values_.arrow_orig; }
  void SetArrowOrig(int32_t plArrowOrig) { Put(&Values::arrow_orig, plArrowOrig); }
  // In the standard look: a code for the arrow at a line's end; 3 by default.
  int32_t ArrowDest() const { return values_.arrow_dest; }
  void SetArrowDest(int32_t plArrowDest) { Put(&Values::arrow_dest, plArrowDest); }
  // In the standard look: a code for the arrow in a line's middle; 0 by default.
  int32_t ArrowMid() const { return values_.arrow_mid; }
  void SetArrowMid(int32_t plArrowMid) { Put(&Values::arrow_mid, plArrowMid); }
  // In the standard look: a code for the size of the arrow at a line's beginning; 0 by default.
  int32_t ArrowOrigSize() const { return values_.arrow_orig_size; }
  void SetArrowOrigSize(int32_t plArrowOrigSize) { Put(&Values::arrow_orig_size, plArrowOrigSize); }
  // In the standard look: a code for the size of the arrow at a line's end; 0 by default. A change
  // reports vndArrowOrigSize.
  int32_t ArrowDestSize() const { return values_.arrow_dest_size; }
  void SetArrowDestSize(int32_t plArrowDestSize) { Put(&Values::arrow_dest_size, plArrowDestSize); }
  // In the standard look: a code for the size of the arrow in a line's middle; 0 by default.
  int32_t ArrowMidSize() const { return values_.arrow_mid_size; }
  void SetArrowMidSize(int32_t plArrowMidSize) { Put(&Values::arrow_mid_size, plArrowMidSize); }
  // In the standard look: a code for what a line does where it crosses another; 0 by default.
  int32_t ShowJump() const { return values_.show_jump; }
  void SetShowJump(int32_t plShowJump) { Put(&Values::show_jump, plShowJump); }
  // In the standard look: the colour inside figures; white (16777215) by default.
  int32_t FillColour() const { return values_.fill_colour; }
  void SetFillColour(int32_t plFillColour) { Put(&Values::fill_colour, plFillColour); }
  // In the standard look: the pen's colour; black (0) by default.
  int32_t DrawColour() const { return values_.draw_colour; }
  void SetDrawColour(int32_t plDrawColour) { Put(&Values::draw_colour, plDrawColour); }
  // In the standard look: the colour of texts; black (0) by default.
  int32_t ForeColour() const { return values_.fore_colour; }
  void SetForeColour(int32_t plForeColour) { Put(&Values::fore_colour, plForeColour); }

  // In the standard look: the font of texts; never Nothing. Changing the object's properties
  // changes the chart's font and reports nothing.
  automation::Ref<automation::Font> Font();
  // The object itself becomes the chart's font.
  void SetFont(automation::Font* poFont);

  // The distance of the grid's points across; 360 by default.
  int32_t GridSizeX() const { return values_.grid_size_x; }
  void SetGridSizeX(int32_t plGridSizeX) { Put(&Values::grid_size_x, plGridSizeX); }
  // The distance of the grid's points down; 360 by default.
  int32_t GridSizeY() const { return values_.grid_size_y; }
  void SetGridSizeY(int32_t plGridSizeY) { Put(&Values::grid_size_y, plGridSizeY); }
  // How far shadows lie to the right; 120 by default. Saved, but a load gives 120 all the same.
  int32_t ShadowOffsetX() const { return values_.shadow_offset_x; }
  void SetShadowOffsetX(int32_t plShadowOffsetX) { Put(&Values::shadow_offset_x, plShadowOffsetX); }
  // How far shadows lie below; 120 by default.
  int32_t ShadowOffsetY() const { return values_.shadow_offset_y; }
  void SetShadowOffsetY(int32_t plShadowOffsetY) { Put(&Values::shadow_offset_y, plShadowOffsetY); }
  // Whether the host shows the steps' numbers; True by default.
  bool ShowStepIndex() const { return values_.show_step_index; }
  void SetShowStepIndex(bool pbShowStepIndex) { Put(&Values::show_step_index, pbShowStepIndex); }
  // What the host writes between a step's number and its label; " - " by default.
  const Text& StepIndexSeparator() const { return values_.step_index_separator; }
  void SetStepIndexSeparator(const Text& psStepIndexSeparator) {
    Put(&Values::step_index_separator, psStepIndexSeparator);
  }

  // A picture behind the chart; Nothing when there is none.
  automation::Ref<automation::Picture> Picture() const { return picture_.get(); }
  void SetPicture(automation::Picture* poPicture);
  // An image of the chart in hexadecimal, which the host makes; any text, empty by default.
  const Text& ChartPictureHEX() const { return values_.chart_picture_hex; }
  void SetChartPictureHEX(const Text& psChartPictureHEX) {
    Put(&Values::chart_picture_hex, psChartPictureHEX);
  }
  // The width that the chart takes up, as the host measured it; 0 by default.
  int32_t ChartWidth() const { return values_.chart_width; }
  void SetChartWidth(int32_t plChartWidth) { Put(&Values::chart_width, plChartWidth); }
  // The height that the chart takes up, as the host measured it; 0 by default.
  int32_t ChartHeight() const { return values_.chart_height; }
  void SetChartHeight(int32_t plChartHeight) { Put(&Values::chart_height, plChartHeight); }
  // What the host writes between the parts of a sequence; " - " by default.
  const Text& SequenceSeperator() const { return values_.sequence_seperator; }
  void SetSequenceSeperator(const Text& psSequenceSeperator) {
    Put(&Values::sequence_seperator, psSequenceSeperator);
  }

  // A page's height; 3000 by default. Stored as 0 it reads as that, and is that from then on.
  int32_t PageHeight();
  void SetPageHeight(int32_t plPageHeight) { Put(&Values::page_height, plPageHeight); }
  // A page's width; 3000 by default. Stored as 0 it reads as that, and is that from then on.
  int32_t PageWidth();
  void SetPageWidth(int32_t plPageWidth) { Put(&Values::page_width, plPageWidth); }
  // Whether the host shows the pages' margins; False by default.
  bool ShowPageMargins() const { return values_.show_page_margins; }
  void SetShowPageMargins(bool pbShowPageMargins) {
    Put(&Values::show_page_margins, pbShowPageMargins);
  }
  // The colour of the pages' margins; a light grey (14737632) by default. Stored as 0 it reads as
  // that grey, and is that from then on. A load gives -1 when the margins are shown, the grey when
  // they are not.
  int32_t PageMarginsColour();
  void SetPageMarginsColour(int32_t plPageMarginsColour) {
    Put(&Values::page_margins_colour, plPageMarginsColour);
  }
  // In the standard look: a code for how lines run; 0 by default.
  int32_t LinkStyle() const { return values_.link_style; }
  void SetLinkStyle(int32_t plLinkStyle) { Put(&Values::link_style, plLinkStyle); }
  // The colour of the grid's points; black (0) by default.
  int32_t GridColour() const { return values_.grid_colour; }
  void SetGridColour(int32_t plGridColour) { Put(&Values::grid_colour, plGridColour); }

 private:
  friend struct Inside;
  void Write(bag::BagWriter& writer);
  // Reports nothing.
  void Read(const bag::KeptText& text);

  struct Schema;
  using Values = ChartValues;
  template <class T>
  void Put(T Values::*member, const T& value);
  void ReportChange(int32_t detail_id);
  void WriteFont(bag::BagWriter& writer);
  void LoadFont(bag::BagReader& reader);
  void WritePicture(bag::BagWriter& writer);
  void LoadPicture(bag::BagReader& reader);
  int32_t Substituted(int32_t Values::*member, int32_t value);

  Values values_;
  automation::Owned<automation::Font> font_;
  automation::Owned<automation::Picture> picture_;
};

}  // namespace vndoc6
