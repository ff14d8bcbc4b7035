// vnFigure: the drawn shape of a step or a container.
#pragma once

#include <cstdint>

#include "vndoc6/automation/font.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/automation/picture.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/chart/shapes.h"
#include "vndoc6/core/member.h"

namespace vndoc6 {

class vnContainer;
class vnStep;

// The plain values of a figure. A figure made by a host has zeros throughout; one that a step or a
// container made has the defaults in figure.cpp, for it was loaded.
struct FigureValues {
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
  int32_t z_order_index = 0;
  bool marked = false;
  bool selectable = false;
  bool scrollable_x = false;
  bool scrollable_y = false;
  bool sizeable_x = false;
  bool sizeable_y = false;
  bool moveable_x = false;
  bool moveable_y = false;
  bool hidden = false;
  bool transparent = false;
  int32_t edit_mode = 0;
  int32_t back_mode = 0;
  EnumVantrelShapes shape = vnsEllipse;
  int32_t alignment = 0;
  int32_t auto_size = 0;
  int32_t picture_position = 0;
  int32_t shape_orientation = 0;
  int32_t draw_style = 0;
  int32_t draw_width = 0;
  int32_t text_margin_x = 0;
  int32_t text_margin_y = 0;
  int32_t fill_colour = 0;
  int32_t draw_colour = 0;
  int32_t fore_colour = 0;
  int32_t user_data = 0;
  Text tooltip;
  int32_t picture_index = 0;
  int32_t shadow = 0;
  bool logical = false;
};

// Every put stores its value as it is, unless its comment says more, and then reports its number
// (vndLeft and so on) as a change of the figure's step or container; a figure that has neither, or
// no document, reports nothing. Positions and sizes are in
// the host's drawing units, for which `vndoc` takes twips (15 make a pixel, 1440 an inch); colours
// hold red in the low byte; codes mean what the drawing host means by them, and their comments say
// how `vndoc` draws them. "By default" says what the figure of a step begins with.
class vnFigure : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnFigure();
  ~vnFigure() override;

  // The step that the figure draws; Nothing for a container's. Setting it takes the container's
  // place, says which kind this figure is, and reports nothing.
  automation::Ref<vnStep> Step() const;
  void SetStep(vnStep* poStep);
  // Whether the owner is a step.
  bool IsStep() const { return is_step_; }
  // The container that the figure draws; Nothing for a step's. Setting it takes the step's place,
  // says which kind this figure is, and reports nothing.
  automation::Ref<vnContainer> Container() const;
  void SetContainer(vnContainer* poContainer);

  // The distance from the chart's left edge; 15 by default. A negative position becomes 15.
  float Left() const { return values_.left; }
  void SetLeft(float pnLeft);
  // The distance from the chart's upper edge; 15 by default. A negative position becomes 15.
  float Top() const { return values_.top; }
  void SetTop(float pnTop);
  // The extent to the right; 1200 by default. May be negative.
  float Width() const { return values_.width; }
  void SetWidth(float pnWidth) { Put(&Values::width, pnWidth); }
  // The extent downwards; 600 by default. May be negative.
  float Height() const { return values_.height; }
  void SetHeight(float pnHeight) { Put(&Values::height, pnHeight); }
  // Where the figure lies above or below others; 0 by default.
  int32_t ZOrderIndex() const { return values_.z_order_index; }
  void SetZOrderIndex(int32_t plZOrderIndex) { Put(&Values::z_order_index, plZOrderIndex); }

  // Whether the user has selected the figure; False by default.
  bool Marked() const { return values_.marked; }
  void SetMarked(bool pbMarked) { Put(&Values::marked, pbMarked); }
  // Whether the user may select the figure; True by default.
  bool Selectable() const { return values_.selectable; }
  void SetSelectable(bool pbSelectable) { Put(&Values::selectable, pbSelectable); }
  // Whether the host scrolls across when the figure is moved over the view's edge; True by default.
  bool ScrollableX() const { return values_.scrollable_x; }
  void SetScrollableX(bool pbScrollableX) { Put(&Values::scrollable_x, pbScrollableX); }
  // Whether the host scrolls down when the figure is moved over the view's edge; True by default.
  bool ScrollableY() const { return values_.scrollable_y; }
  void SetScrollableY(bool pbScrollableY) { Put(&Values::scrollable_y, pbScrollableY); }
  // Whether the user may change the width; True by default.
  bool SizeableX() const { return values_.sizeable_x; }
  void SetSizeableX(bool pbSizeableX) { Put(&Values::sizeable_x, pbSizeableX); }
  // Whether the user may change the height; True by default.
  bool SizeableY() const { return values_.sizeable_y; }
  void SetSizeableY(bool pbSizeableY) { Put(&Values::sizeable_y, pbSizeableY); }
  // Whether the user may move the figure across; True by default.
  bool MoveableX() const { return values_.moveable_x; }
  void SetMoveableX(bool pbMoveableX) { Put(&Values::moveable_x, pbMoveableX); }
  // Whether the user may move the figure up and down; True by default.
  bool MoveableY() const { return values_.moveable_y; }
  void SetMoveableY(bool pbMoveableY) { Put(&Values::moveable_y, pbMoveableY); }

  // Whether the figure is not drawn; False by default.
  bool Hidden() const { return values_.hidden; }
  void SetHidden(bool pbHidden) { Put(&Values::hidden, pbHidden); }
  // Whether what lies behind shows through; False by default, True for a container's figure.
  bool Transparent() const { return values_.transparent; }
  void SetTransparent(bool pbTransparent) { Put(&Values::transparent, pbTransparent); }
  // A code for how the user edits the text; 0 by default.
  int32_t EditMode() const { return values_.edit_mode; }
  void SetEditMode(int32_t plEditMode) { Put(&Values::edit_mode, plEditMode); }
  // A code for what is behind texts and patterns; 5 by default.
  int32_t BackMode() const { return values_.back_mode; }
  void SetBackMode(int32_t plBackMode) { Put(&Values::back_mode, plBackMode); }
  // The outline; vnsProcess by default, vnsRectangle for a container's figure. Other numbers than
  // EnumVantrelShapes has are stored too.
  EnumVantrelShapes Shape() const { return values_.shape; }
  void SetShape(EnumVantrelShapes peShape) { Put(&Values::shape, peShape); }
  // A code for where the text stands; 7 by default. 0 to 2 are on the left, at the top, in the
  // middle and at the bottom, 3 to 5 on the right, 6 to 8 in the middle; any other is drawn as 7.
  int32_t Alignment() const { return values_.alignment; }
  void SetAlignment(int32_t plAlignment) { Put(&Values::alignment, plAlignment); }
  // A code for how figure, text and picture fit each other; 0 by default.
  int32_t AutoSize() const { return values_.auto_size; }
  void SetAutoSize(int32_t plAutoSize) { Put(&Values::auto_size, plAutoSize); }
  // A code for where the picture stands; 9 by default. 0 to 8 are the places of Alignment, over the
  // text; any other is left of the text.
  int32_t PicturePosition() const { return values_.picture_position; }
  void SetPicturePosition(int32_t plPicturePosition) {
    Put(&Values::picture_position, plPicturePosition);
  }
  // A code for how the shape is turned; 0 by default. 1 to 3 are quarters clockwise; of any other
  // number the two lowest bits count.
  int32_t ShapeOrientation() const { return values_.shape_orientation; }
  void SetShapeOrientation(int32_t plShapeOrientation) {
    Put(&Values::shape_orientation, plShapeOrientation);
  }
  // A code for the pen's pattern, solid or dashed; 0 by default. 0 is solid, 1 dashes, 2 dots, 3
  // dashes and dots, 4 dashes and two dots, 5 no line; any other is drawn solid.
  int32_t DrawStyle() const { return values_.draw_style; }
  void SetDrawStyle(int32_t plDrawStyle) { Put(&Values::draw_style, plDrawStyle); }
  // The pen's width in pixels; 1 by default. Drawn from 1 to 40.
  int32_t DrawWidth() const { return values_.draw_width; }
  void SetDrawWidth(int32_t plDrawWidth) { Put(&Values::draw_width, plDrawWidth); }
  // The distance of the text from the left and right edges, in drawing units; 0 by default.
  int32_t TextMarginX() const { return values_.text_margin_x; }
  void SetTextMarginX(int32_t plTextMarginX) { Put(&Values::text_margin_x, plTextMarginX); }
  // The distance of the text from the upper and lower edges, in drawing units; 0 by default.
  int32_t TextMarginY() const { return values_.text_margin_y; }
  void SetTextMarginY(int32_t plTextMarginY) { Put(&Values::text_margin_y, plTextMarginY); }
  // The colour inside; white (16777215) by default.
  int32_t FillColour() const { return values_.fill_colour; }
  void SetFillColour(int32_t plFillColour) { Put(&Values::fill_colour, plFillColour); }
  // The pen's colour; black (0) by default.
  int32_t DrawColour() const { return values_.draw_colour; }
  void SetDrawColour(int32_t plDrawColour) { Put(&Values::draw_colour, plDrawColour); }
  // The text's colour; black (0) by default.
  int32_t ForeColour() const { return values_.fore_colour; }
  void SetForeColour(int32_t plForeColour) { Put(&Values::fore_colour, plForeColour); }

  // A number for the host's own use; 0 by default.
  int32_t UserData() const { return values_.user_data; }
  void SetUserData(int32_t plUserData) { Put(&Values::user_data, plUserData); }
  // A key of the host's for the figure; empty by default. Setting it reports nothing.
  const Text& Key() const { return key_; }
  void SetKey(const Text& psKey) { key_ = psKey; }
  // What users see when they point at the figure; empty by default.
  const Text& Tooltip() const { return values_.tooltip; }
  void SetTooltip(const Text& psTooltip) { Put(&Values::tooltip, psTooltip); }
  // The number of a picture in the host's list; 0 by default. Saved, but not read again: after a
  // load it is what it was before.
  int32_t PictureIndex() const { return values_.picture_index; }
  void SetPictureIndex(int32_t plPictureIndex) { Put(&Values::picture_index, plPictureIndex); }

  // The text's font; never Nothing. Whoever changes this object's properties changes the figure's
  // font, and the figure reports vndFont. Setting another object only reports vndFont.
  automation::Ref<automation::Font> Font();
  // Reports vndFont and leaves the figure's font as it is.
  void SetFont(automation::Font* poFont);
  // The picture shown. When there is none, reading gives an empty picture, which then is the
  // figure's.
  automation::Ref<automation::Picture> Picture();
  void SetPicture(automation::Picture* poPicture);

  // A code for the shadow; 0, which is none, by default. Any other is drawn as one of the chart's
  // ShadowColour, ShadowOffsetX and ShadowOffsetY.
  int32_t Shadow() const { return values_.shadow; }
  void SetShadow(int32_t plShadow) { Put(&Values::shadow, plShadow); }
  // Whether the figure takes part in the procedure's logic; True by default.
  bool Logical() const { return values_.logical; }
  void SetLogical(bool pbLogical) { Put(&Values::logical, pbLogical); }

 protected:
  friend struct Inside;
  void Write(bag::BagWriter& writer);
  // The owner must be set: some defaults depend on it. Reports vndFont six times and vndPicture
  // once, as changes of the owner.
  void Read(const bag::KeptText& text, const Text& key);
  // Takes over every value, font and picture included, with an equal font object of its own.
  // Document and owner stay. Reports nothing.
  void CopyFrom(const vnFigure& other);

  automation::Object* FindParent() const override;

 private:
  struct Schema;
  using Values = FigureValues;
  template <class T>
  void Put(T Values::*member, const T& value);
  void ReportChange(int32_t detail_id);
  void KeepFont(automation::Font* font);
  void WriteFont(bag::BagWriter& writer);
  void WritePicture(bag::BagWriter& writer);
  void LoadFont(bag::BagReader& reader);
  void LoadPicture(bag::BagReader& reader);

  automation::Weak<vnStep> step_;
  automation::Weak<vnContainer> container_;
  bool is_step_ = false;
  Text key_;
  Values values_;
  automation::Owned<automation::Font> font_;
  automation::Owned<automation::Picture> picture_;
};

}  // namespace vndoc6
