// vnLine: the drawn connector of a link.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "vndoc6/automation/font.h"
#include "vndoc6/automation/object.h"
#include "vndoc6/bag/kept_text.h"
#include "vndoc6/bag/unknown_entries.h"
#include "vndoc6/core/member.h"

namespace vndoc6 {

class vnLink;

// The plain values of a line. One made by a host has zeros throughout; a link's has the defaults
// in line.cpp, for it was loaded.
struct LineValues {
  int32_t orig_figure_index = 0;
  int32_t dest_figure_index = 0;
  int32_t z_order_index = 0;
  bool marked = false;
  bool logical = false;
  bool selectable = false;
  bool stretchable = false;
  bool orthogonal_dynamic = false;
  bool oriented_text = false;
  bool hidden = false;
  bool orig_adjustable = false;
  bool dest_adjustable = false;
  bool rigid = false;
  int32_t back_mode = 0;
  int32_t link_style = 0;
  int32_t arrow_dest = 0;
  int32_t arrow_orig = 0;
  int32_t arrow_mid = 0;
  int32_t arrow_dest_size = 0;
  int32_t arrow_orig_size = 0;
  int32_t arrow_mid_size = 0;
  int32_t draw_style = 0;
  int32_t draw_width = 0;
  int32_t show_jump = 0;
  int32_t text_segment = 0;
  int32_t draw_colour = 0;
  int32_t fore_colour = 0;
  int32_t user_data = 0;
  int32_t orig_x = 0;
  int32_t orig_y = 0;
  int32_t dest_x = 0;
  int32_t dest_y = 0;
};

// Every put stores its value as it is and then reports its number (vndOrigFigureIndex and so on)
// as a change of the line's link, unless its comment says more; a line without a link or without a
// document reports nothing. Coordinates are in the host's
// drawing units, for which `vndoc` takes twips (15 make a pixel, 1440 an inch); colours hold red in
// the low byte; codes mean what the drawing host means by them, and their comments say how `vndoc`
// draws them. "By default" says what the line of a link begins with.
class vnLine : public Member, public bag::Carrier {
 public:
  static const automation::ClassInfo& classInfo();
  const automation::ClassInfo* GetClassInfo() const override { return &classInfo(); }

  // Gives the line a document; reports nothing.
  void SetDocument(vnDocument* poDocument) { TakeDocument(poDocument); }
  // The link that the line draws; Nothing for one that a host made.
  automation::Ref<vnLink> Link() const;
  // Gives the line the link whose change its own changes are reported as; reports nothing.
  void SetLink(vnLink* poLink);

  // The number of the figure that the line leaves, as the drawing host counts; 0 by default.
  int32_t OrigFigureIndex() const { return values_.orig_figure_index; }
  void SetOrigFigureIndex(int32_t plOrigFigureIndex) {
    Put(&Values::orig_figure_index, plOrigFigureIndex);
  }
  // The number of the figure that the line enters, as the drawing host counts; 0 by default.
  int32_t DestFigureIndex() const { return values_.dest_figure_index; }
  void SetDestFigureIndex(int32_t plDestFigureIndex) {
    Put(&Values::dest_figure_index, plDestFigureIndex);
  }
  // Where the line lies above or below others; 0 by default. A change reports vndWidth.
  int32_t ZOrderIndex() const { return values_.z_order_index; }
  void SetZOrderIndex(int32_t plZOrderIndex) { Put(&Values::z_order_index, plZOrderIndex); }

  // Whether the user has selected the line; False by default.
  bool Marked() const { return values_.marked; }
  void SetMarked(bool pbMarked) { Put(&Values::marked, pbMarked); }
  // Whether the line takes part in the procedure's logic; True by default.
  bool Logical() const { return values_.logical; }
  void SetLogical(bool pbLogical) { Put(&Values::logical, pbLogical); }
  // Whether the user may select the line; True by default.
  bool Selectable() const { return values_.selectable; }
  void SetSelectable(bool pbSelectable) { Put(&Values::selectable, pbSelectable); }
  // Whether the user may add and move bends; True by default.
  bool Stretchable() const { return values_.stretchable; }
  void SetStretchable(bool pbStretchable) { Put(&Values::stretchable, pbStretchable); }
  // Whether the line keeps to right angles as its figures move; False by default.
  bool OrthogonalDynamic() const { return values_.orthogonal_dynamic; }
  void SetOrthogonalDynamic(bool pbOrthogonalDynamic) {
    Put(&Values::orthogonal_dynamic, pbOrthogonalDynamic);
  }
  // Whether the text follows the line's direction; False by default.
  bool OrientedText() const { return values_.oriented_text; }
  void SetOrientedText(bool pbOrientedText) { Put(&Values::oriented_text, pbOrientedText); }
  // Whether the line is not drawn; False by default.
  bool Hidden() const { return values_.hidden; }
  void SetHidden(bool pbHidden) { Put(&Values::hidden, pbHidden); }
  // Whether the user may move the beginning along its figure; False by default.
  bool OrigAdjustable() const { return values_.orig_adjustable; }
  void SetOrigAdjustable(bool pbOrigAdjustable) { Put(&Values::orig_adjustable, pbOrigAdjustable); }
  // Whether the user may move the end along its figure; False by default.
  bool DestAdjustable() const { return values_.dest_adjustable; }
  void SetDestAdjustable(bool pbDestAdjustable) { Put(&Values::dest_adjustable, pbDestAdjustable); }
  // Whether the line keeps its form as its figures move; False by default.
  bool Rigid() const { return values_.rigid; }
  void SetRigid(bool pbRigid) { Put(&Values::rigid, pbRigid); }

  // A code for what is behind texts and dashes; 2 by default. 1 lets the line show through it;
  // with any other the text covers it.
  int32_t BackMode() const { return values_.back_mode; }
  void SetBackMode(int32_t plBackMode) { Put(&Values::back_mode, plBackMode); }
  // A code for how the line runs; 0 by default. 1 and 2 are curves along the points; any other goes
  // straight from point to point.
  int32_t LinkStyle() const { return values_.link_style; }
  void SetLinkStyle(int32_t plLinkStyle) { Put(&Values::link_style, plLinkStyle); }
  // A code for the arrow at the end; 3 by default. 0 is none, 1 an open tip, 2 a diamond, 4 a dot;
  // any other is a filled tip.
  int32_t ArrowDest() const { return values_.arrow_dest; }
  void SetArrowDest(int32_t plArrowDest) { Put(&Values::arrow_dest, plArrowDest); }
  // A code for the arrow at the beginning; 0 by default. The codes are those of ArrowDest.
  int32_t ArrowOrig() const { return values_.arrow_orig; }
  void SetArrowOrig(int32_t plArrowOrig) { Put(&Values::arrow_orig, plArrowOrig); }
  // A code for the arrow in the middle of the longest part; 0 by default. The codes are those of
  // ArrowDest.
  int32_t ArrowMid() const { return values_.arrow_mid; }
  void SetArrowMid(int32_t plArrowMid) { Put(&Values::arrow_mid, plArrowMid); }
  // A code for the size of the arrow at the end; 0 by default. 1 is small, 2 large; any other is
  // between the two.
  int32_t ArrowDestSize() const { return values_.arrow_dest_size; }
  void SetArrowDestSize(int32_t plArrowDestSize) { Put(&Values::arrow_dest_size, plArrowDestSize); }
  // A code for the size of the arrow at the beginning; 0 by default. The codes are those of
  // ArrowDestSize.
  int32_t ArrowOrigSize() const { return values_.arrow_orig_size; }
  void SetArrowOrigSize(int32_t plArrowOrigSize) { Put(&Values::arrow_orig_size, plArrowOrigSize); }
  // A code for the size of the arrow in the middle; 0 by default. The codes are those of
  // ArrowDestSize.
  int32_t ArrowMidSize() const { return values_.arrow_mid_size; }
  void SetArrowMidSize(int32_t plArrowMidSize) { Put(&Values::arrow_mid_size, plArrowMidSize); }
  // A code for the pen's pattern, solid or dashed; 0 by default. 0 is solid, 1 dashes, 2 dots, 3
  // dashes and dots, 4 dashes and two dots, 5 no line; any other is drawn solid.
  int32_t DrawStyle() const { return values_.draw_style; }
  void SetDrawStyle(int32_t plDrawStyle) { Put(&Values::draw_style, plDrawStyle); }
  // The pen's width in pixels; 1 by default. Drawn from 1 to 40.
  int32_t DrawWidth() const { return values_.draw_width; }
  void SetDrawWidth(int32_t plDrawWidth) { Put(&Values::draw_width, plDrawWidth); }
  // Whether the line hops over lines that it crosses: a number that stands for a flag, True (-1) by
  // default.
  int32_t ShowJump() const { return values_.show_jump; }
  void SetShowJump(int32_t plShowJump) { Put(&Values::show_jump, plShowJump); }
  // A code for the segment that bears the text; 0 by default. 1 is the first; the text then stands
  // on it. With any other it stands beside the line, near the line's beginning.
  int32_t TextSegment() const { return values_.text_segment; }
  void SetTextSegment(int32_t plTextSegment) { Put(&Values::text_segment, plTextSegment); }
  // The pen's colour; black (0) by default.
  int32_t DrawColour() const { return values_.draw_colour; }
  void SetDrawColour(int32_t plDrawColour) { Put(&Values::draw_colour, plDrawColour); }
  // The text's colour; black (0) by default.
  int32_t ForeColour() const { return values_.fore_colour; }
  void SetForeColour(int32_t plForeColour) { Put(&Values::fore_colour, plForeColour); }

  // A number for the host's own use; 0 by default.
  int32_t UserData() const { return values_.user_data; }
  void SetUserData(int32_t plUserData) { Put(&Values::user_data, plUserData); }

  // The text's font; never Nothing. Changing this object's properties changes the line's font and
  // reports nothing.
  automation::Ref<automation::Font> Font();
  // The object itself becomes the line's font.
  void SetFont(automation::Font* poFont);

  // Where the line begins, from the left; 0 by default.
  int32_t OrigX() const { return values_.orig_x; }
  void SetOrigX(int32_t plOrigX) { Put(&Values::orig_x, plOrigX); }
  // Where the line begins, from above; 0 by default.
  int32_t OrigY() const { return values_.orig_y; }
  void SetOrigY(int32_t plOrigY) { Put(&Values::orig_y, plOrigY); }
  // Where the line ends, from the left; 0 by default.
  int32_t DestX() const { return values_.dest_x; }
  void SetDestX(int32_t plDestX) { Put(&Values::dest_x, plDestX); }
  // Where the line ends, from above; 0 by default.
  int32_t DestY() const { return values_.dest_y; }
  void SetDestY(int32_t plDestY) { Put(&Values::dest_y, plDestY); }

  // The distance of a bend from the left; the bends between the ends are points 1 to
  // ExtraPointCount. There is a point 0 as well, which is none of them and not saved. An index that
  // there is no point for raises error 9 when read; a put of one above the count raises the count
  // to it, error 9 above 1,000,000.
  int32_t ExtraPointX(int32_t plIndex) const { return PointAt(plIndex).x; }
  // The distance of a bend from above; what ExtraPointX says of indexes holds here too.
  int32_t ExtraPointY(int32_t plIndex) const { return PointAt(plIndex).y; }
  void SetExtraPointX(int32_t plIndex, int32_t plValue);
  void SetExtraPointY(int32_t plIndex, int32_t plValue);
  // How many bends there are; 0 by default. A put brings the number into the range 0 to 75, keeps
  // the points that still fit, and reports vndExtraPointY, then vndExtraPointX.
  int32_t ExtraPointCount() const { return point_count_; }
  void SetExtraPointCount(int32_t plExtraPointCount);
  // While it is True, changes of the extra points and their number report nothing; not saved.
  bool UpdateExtraPoints() const { return update_extra_points_; }
  void SetUpdateExtraPoints(bool pbUpdateExtraPoints) {
    update_extra_points_ = pbUpdateExtraPoints;
  }

  // For C++ hosts: the points that there is something to see of, in ascending order: all up to the
  // thousandth, and those behind that a text or a host has set. The others are (0, 0). A line takes
  // memory and a saved text for these only, whatever its count says.
  std::vector<int32_t> ExtraPointNumbers() const;

 protected:
  friend struct Inside;
  // Error 91 when the line was never loaded nor its font read.
  void Write(bag::BagWriter& writer);
  // Reports nothing.
  void Read(const bag::KeptText& text);
  // Takes over every saved value, with an equal font object of its own. Document and link stay.
  // Reports nothing.
  void CopyFrom(const vnLine& other);

  automation::Object* FindParent() const override;

 private:
  struct Schema;
  static std::vector<int32_t> PointNumbers(const automation::Object& line);
  using Values = LineValues;
  struct Point {
    int32_t x = 0;
    int32_t y = 0;
  };
  template <class T>
  void Put(T Values::*member, const T& value);
  void ReportChange(int32_t detail_id);
  const Point& PointAt(int32_t index) const;
  void PutPoint(int32_t index, int32_t Point::*member, int32_t value, int32_t detail_id);
  void WriteFont(bag::BagWriter& writer);
  void LoadFont(bag::BagReader& reader);
  void WritePoints(bag::BagWriter& writer);
  void ReadPoints(bag::BagReader& reader);

  automation::Weak<vnLink> link_;
  Values values_;
  automation::Owned<automation::Font> font_;
  bool update_extra_points_ = false;
  int32_t point_count_ = 0;
  std::map<int32_t, Point> points_;  // those that were set
};

}  // namespace vndoc6
