// vnFigure: the drawn shape of a step or a container.
#pragma once

#include <cstdint>

#include "automation/font.h"
#include "automation/object.h"
#include "automation/picture.h"
#include "chart/shapes.h"
#include "common/bag_writer.h"
#include "common/kept_text.h"
#include "core/member.h"

namespace vndoc6 {

namespace common {
class BagReader;
}

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
// (vndLeft and so on) as a change of the figure's step or container. Positions and sizes are in
// the host's drawing units, colours hold red in the low byte, and codes mean what the drawing host
// means by them.
class vnFigure : public Member {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  vnFigure();
  ~vnFigure() override;

  // The owner: a step or a container, the other one is Nothing. Setting one clears the other, says
  // which kind this figure is, and reports nothing.
  automation::Ref<vnStep> Step() const;
  void SetStep(vnStep* poStep);
  bool IsStep() const { return is_step_; }
  automation::Ref<vnContainer> Container() const;
  void SetContainer(vnContainer* poContainer);

  // A negative position becomes 15. Sizes may be negative.
  float Left() const { return values_.left; }
  void SetLeft(float pnLeft);
  float Top() const { return values_.top; }
  void SetTop(float pnTop);
  float Width() const { return values_.width; }
  void SetWidth(float pnWidth) { Put(&Values::width, pnWidth); }
  float Height() const { return values_.height; }
  void SetHeight(float pnHeight) { Put(&Values::height, pnHeight); }
  int32_t ZOrderIndex() const { return values_.z_order_index; }
  void SetZOrderIndex(int32_t plZOrderIndex) { Put(&Values::z_order_index, plZOrderIndex); }

  // What the user may do with the figure, and whether it is selected.
  bool Marked() const { return values_.marked; }
  void SetMarked(bool pbMarked) { Put(&Values::marked, pbMarked); }
  bool Selectable() const { return values_.selectable; }
  void SetSelectable(bool pbSelectable) { Put(&Values::selectable, pbSelectable); }
  bool ScrollableX() const { return values_.scrollable_x; }
  void SetScrollableX(bool pbScrollableX) { Put(&Values::scrollable_x, pbScrollableX); }
  bool ScrollableY() const { return values_.scrollable_y; }
  void SetScrollableY(bool pbScrollableY) { Put(&Values::scrollable_y, pbScrollableY); }
  bool SizeableX() const { return values_.sizeable_x; }
  void SetSizeableX(bool pbSizeableX) { Put(&Values::sizeable_x, pbSizeableX); }
  bool SizeableY() const { return values_.sizeable_y; }
  void SetSizeableY(bool pbSizeableY) { Put(&Values::sizeable_y, pbSizeableY); }
  bool MoveableX() const { return values_.moveable_x; }
  void SetMoveableX(bool pbMoveableX) { Put(&Values::moveable_x, pbMoveableX); }
  bool MoveableY() const { return values_.moveable_y; }
  void SetMoveableY(bool pbMoveableY) { Put(&Values::moveable_y, pbMoveableY); }

  // How it is drawn.
  bool Hidden() const { return values_.hidden; }
  void SetHidden(bool pbHidden) { Put(&Values::hidden, pbHidden); }
  bool Transparent() const { return values_.transparent; }
  void SetTransparent(bool pbTransparent) { Put(&Values::transparent, pbTransparent); }
  int32_t EditMode() const { return values_.edit_mode; }
  void SetEditMode(int32_t plEditMode) { Put(&Values::edit_mode, plEditMode); }
  int32_t BackMode() const { return values_.back_mode; }
  void SetBackMode(int32_t plBackMode) { Put(&Values::back_mode, plBackMode); }
  EnumVantrelShapes Shape() const { return values_.shape; }
  void SetShape(EnumVantrelShapes peShape) { Put(&Values::shape, peShape); }
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
  int32_t TextMarginX() const { return values_.text_margin_x; }
  void SetTextMarginX(int32_t plTextMarginX) { Put(&Values::text_margin_x, plTextMarginX); }
  int32_t TextMarginY() const { return values_.text_margin_y; }
  void SetTextMarginY(int32_t plTextMarginY) { Put(&Values::text_margin_y, plTextMarginY); }
  int32_t FillColour() const { return values_.fill_colour; }
  void SetFillColour(int32_t plFillColour) { Put(&Values::fill_colour, plFillColour); }
  int32_t DrawColour() const { return values_.draw_colour; }
  void SetDrawColour(int32_t plDrawColour) { Put(&Values::draw_colour, plDrawColour); }
  int32_t ForeColour() const { return values_.fore_colour; }
  void SetForeColour(int32_t plForeColour) { Put(&Values::fore_colour, plForeColour); }

  // For the host's own use.
  int32_t UserData() const { return values_.user_data; }
  void SetUserData(int32_t plUserData) { Put(&Values::user_data, plUserData); }
  // Reports nothing.
  const Text& Key() const { return key_; }
  void SetKey(const Text& psKey) { key_ = psKey; }
  const Text& Tooltip() const { return values_.tooltip; }
  void SetTooltip(const Text& psTooltip) { Put(&Values::tooltip, psTooltip); }
  // Saved, but not read again: after a load it is what it was before.
  int32_t PictureIndex() const { return values_.picture_index; }
  void SetPictureIndex(int32_t plPictureIndex) { Put(&Values::picture_index, plPictureIndex); }

  // Never Nothing. Whoever changes this object's properties changes the figure's font, and the
  // figure reports vndFont.
  automation::Ref<automation::Font> Font();
  // Reports vndFont and leaves the figure's font as it is.
  void SetFont(automation::Font* poFont);
  // An empty picture when there is none, which then is the figure's.
  automation::Ref<automation::Picture> Picture();
  void SetPicture(automation::Picture* poPicture);

  int32_t Shadow() const { return values_.shadow; }
  void SetShadow(int32_t plShadow) { Put(&Values::shadow, plShadow); }
  bool Logical() const { return values_.logical; }
  void SetLogical(bool pbLogical) { Put(&Values::logical, pbLogical); }

  // --- Inside the library; hosts have no use for these. ---
  void InternalWrite(common::BagWriter& writer);
  // The owner must be set: some defaults depend on it. Reports vndFont six times and vndPicture
  // once, as changes of the owner.
  void InternalLoad(const common::KeptText& text, const Text& key);
  // Takes over every value, font and picture included, with an equal font object of its own.
  // Document and owner stay. Reports nothing.
  void InternalCopyFrom(const vnFigure& other);

 protected:
  automation::Object* FindParent() const override;

 private:
  using Values = FigureValues;
  template <class T>
  void Put(T Values::*member, const T& value);
  void ReportChange(int32_t detail_id);
  void KeepFont(automation::Font* font);
  void LoadFont(common::BagReader& reader);
  void LoadPicture(common::BagReader& reader);

  automation::Weak<vnStep> step_;
  automation::Weak<vnContainer> container_;
  bool is_step_ = false;
  Text key_;
  Values values_;
  automation::Owned<automation::Font> font_;
  automation::Owned<automation::Picture> picture_;
};

}  // namespace vndoc6
