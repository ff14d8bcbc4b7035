#include "chart/figure.h"

#include "automation/describe.h"
#include "automation/services.h"
#include "bag/bag_reader.h"
#include "chart/field_table.h"
#include "chart/font_text.h"
#include "core/detail_id.h"
#include "document/document.h"
#include "platform/keys.h"
#include "process/container.h"
#include "process/step.h"

namespace vndoc6 {
namespace {

using V = FigureValues;

// What stands before the font in the saved text, between font and picture, and after the picture.
constexpr std::tuple kToFont{
    row(&V::alignment, "A", 7, vndAlignment),
    row(&V::auto_size, "AS", 0, vndAutoSize),
    row(&V::back_mode, "BM", 5, vndBackMode),
    row(&V::draw_colour, "DC", 0, vndDrawColour),
    row(&V::draw_style, "DS", 0, vndDrawStyle),
    row(&V::draw_width, "DW", 1, vndDrawWidth),
    row(&V::edit_mode, "EM", 0, vndEditMode),
    row(&V::fill_colour, "FlC", 16777215, vndFillColour),
};
constexpr std::tuple kToPicture{
    row(&V::fore_colour, "FC", 0, vndForeColour),  row(&V::height, "H", 600, vndHeight),
    row(&V::hidden, "Hid", false, vndHidden),      row(&V::left, "Lef", 15, vndLeft),
    row(&V::logical, "Log", true, vndLogical),     row(&V::marked, "M", false, vndMarked),
    row(&V::moveable_x, "MX", true, vndMoveableX), row(&V::moveable_y, "MY", true, vndMoveableY),
};
constexpr std::tuple kFromPicture{
    // Hosts keep the index only while they run and rely on it not coming back.
    row(&V::picture_index, "PI", 0, vndPictureIndex).NeverLoaded(),
    row(&V::picture_position, "PP", 9, vndPicturePosition),
    row(&V::scrollable_x, "SX", true, vndScrollableX),
    row(&V::scrollable_y, "SY", true, vndScrollableY),
    row(&V::selectable, "S", true, vndSelectable),
    row(&V::shadow, "Sh", 0, vndShadow),
    row(&V::shape, "Sp", vnsProcess, vndShape),
    row(&V::shape_orientation, "SO", 0, vndShapeOrientation),
    row(&V::sizeable_x, "SzX", true, vndSizeableX),
    row(&V::sizeable_y, "SzY", true, vndSizeableY),
    row(&V::text_margin_x, "TMX", 0, vndTextMarginX),
    row(&V::text_margin_y, "TMY", 0, vndTextMarginY),
    row(&V::tooltip, "TT", u"", vndTooltip),
    row(&V::top, "Tp", 15, vndTop),
    row(&V::transparent, "Tr", false, vndTransparent),
    row(&V::user_data, "UD", 0, vndUserData),
    row(&V::width, "W", 1200, vndWidth),
    row(&V::z_order_index, "ZOI", 0, vndZOrderIndex),
};
constexpr auto kFields = std::tuple_cat(kToFont, kToPicture, kFromPicture);

// Hosts rely on this for positions only; sizes may be negative.
float Position(float value) { return value < 0 ? 15.0f : value; }

}  // namespace

vnFigure::vnFigure() = default;

vnFigure::~vnFigure() { KeepFont(nullptr); }

automation::Object* vnFigure::FindParent() const {
  if (vnStep* step = step_.get()) return step;
  return OwnerOrDocument(container_.get());
}

automation::Ref<vnStep> vnFigure::Step() const { return step_.get(); }

void vnFigure::SetStep(vnStep* poStep) {
  step_ = poStep;
  container_ = nullptr;
  is_step_ = true;
  ParentChanged();
}

automation::Ref<vnContainer> vnFigure::Container() const { return container_.get(); }

void vnFigure::SetContainer(vnContainer* poContainer) {
  container_ = poContainer;
  step_ = nullptr;
  is_step_ = false;
  ParentChanged();
}

template <class T>
void vnFigure::Put(T Values::*member, const T& value) {
  values_.*member = value;
  ReportChange(DetailIdOf(kFields, member));
}
template void vnFigure::Put(bool Values::*, const bool&);
template void vnFigure::Put(float Values::*, const float&);
template void vnFigure::Put(int32_t Values::*, const int32_t&);
template void vnFigure::Put(EnumVantrelShapes Values::*, const EnumVantrelShapes&);
template void vnFigure::Put(Text Values::*, const Text&);

// A host's handler may let go of this figure.
void vnFigure::ReportChange(int32_t detail_id) {
  vnDocument* const document = InternalDocument();
  if (document == nullptr) return;
  if (vnStep* const step = step_.get()) {
    document->InternalStepChange(*step, detail_id);
  } else if (vnContainer* const container = container_.get()) {
    document->InternalContainerChange(*container, detail_id);
  }
}

void vnFigure::SetLeft(float pnLeft) { Put(&Values::left, Position(pnLeft)); }
void vnFigure::SetTop(float pnTop) { Put(&Values::top, Position(pnTop)); }

// Replaces the figure's font. A font may outlive its figure and must not call it then.
void vnFigure::KeepFont(automation::Font* font) {
  if (font_) font_->Listen(nullptr);
  font_ = font;
  if (font_) font_->Listen([this] { ReportChange(vndFont); });
}

automation::Ref<automation::Font> vnFigure::Font() {
  if (!font_) KeepFont(automation::services().make_font().get());
  return font_.get();
}

// Hosts that copy one figure's font to another with this rely on the figure keeping its own object.
void vnFigure::SetFont(automation::Font* /*poFont*/) { ReportChange(vndFont); }

automation::Ref<automation::Picture> vnFigure::Picture() {
  if (!picture_) picture_ = automation::services().make_picture({}).get();
  return picture_.get();
}

void vnFigure::SetPicture(automation::Picture* poPicture) {
  picture_ = poPicture;
  ReportChange(vndPicture);
}

void vnFigure::InternalWrite(bag::BagWriter& writer) {
  // Saved as "K" but loaded from "Key": a figure's key lives as long as the figure, and its text
  // is told apart by a key of its own on every save.
  writer.Add("K", key_.empty() ? platform::NewKey() : key_);
  WriteFields(writer, kToFont, values_);
  WriteFontText(writer, *Font());
  WriteFields(writer, kToPicture, values_);
  writer.AddPicture("Pic", Picture()->Bytes());
  WriteFields(writer, kFromPicture, values_);
}

void vnFigure::InternalLoad(const bag::KeptText& text, const Text& key) {
  const automation::Ref<vnFigure> alive(this);  // what is reported runs a host's code
  bag::BagReader reader(text);
  key_ = key.empty() ? reader.GetText("Key") : key;
  ReadFields(reader, kToFont, values_);
  LoadFont(reader);
  ReadFields(reader, kToPicture, values_);
  LoadPicture(reader);
  ReadFields(reader, kFromPicture, values_);
  if (is_step_) return;
  values_.shape = static_cast<EnumVantrelShapes>(reader.GetLong("Sp", vnsRectangle));
  values_.transparent = reader.GetBoolean("Tr", true);
}

// A host that listens while loading relies on one vndFont for each of the six properties.
void vnFigure::LoadFont(bag::BagReader& reader) {
  const automation::Ref<automation::Font> font = automation::services().make_font();
  KeepFont(font.get());
  automation::WriteFont(*font, ReadFontText(reader));
}

void vnFigure::LoadPicture(bag::BagReader& reader) {
  // Files of early versions have it as "Picture". It is put as a host would put it, also when
  // there is none, so that every load reports vndPicture once.
  SetPicture(ReadPicture(reader, "Picture").get());
  picture_ = ReadPicture(reader, "Pic").get();
}

void vnFigure::InternalCopyFrom(const vnFigure& other) {
  key_ = other.key_;
  values_ = other.values_;
  KeepFont(CopyFont(other.font_.get()).get());
  picture_ = CopyPicture(other.picture_.get()).get();
}

const automation::ClassInfo& vnFigure::classInfo() {
  using namespace automation;
  static const ClassInfo info = describe<vnFigure>(
      "vnFigure", "The drawn shape of a step or a container.",
      {0x9E9EEEE5, 0xF83E, 0x4154, {0x83, 0x06, 0x6F, 0xDE, 0x38, 0x83, 0x95, 0x9B}},
      {0x743DD9DA, 0xD113, 0x4C1D, {0xAC, 0xBD, 0x80, 0xC4, 0x80, 0x2C, 0xC5, 0x14}},
      {
          get<&vnFigure::Document>("Document"),
          get<&vnFigure::Step>("Step"),
          putref<&vnFigure::SetStep>("Step", "poStep"),
          get<&vnFigure::IsStep>("IsStep"),
          get<&vnFigure::Container>("Container"),
          putref<&vnFigure::SetContainer>("Container", "poContainer"),
          get<&vnFigure::Left>("Left"),
          put<&vnFigure::SetLeft>("Left", "pnLeft"),
          get<&vnFigure::Top>("Top"),
          put<&vnFigure::SetTop>("Top", "pnTop"),
          get<&vnFigure::Width>("Width"),
          put<&vnFigure::SetWidth>("Width", "pnWidth"),
          get<&vnFigure::Height>("Height"),
          put<&vnFigure::SetHeight>("Height", "pnHeight"),
          get<&vnFigure::ZOrderIndex>("ZOrderIndex"),
          put<&vnFigure::SetZOrderIndex>("ZOrderIndex", "plZOrderIndex"),
          get<&vnFigure::Marked>("Marked"),
          put<&vnFigure::SetMarked>("Marked", "pbMarked"),
          get<&vnFigure::Selectable>("Selectable"),
          put<&vnFigure::SetSelectable>("Selectable", "pbSelectable"),
          get<&vnFigure::ScrollableX>("ScrollableX"),
          put<&vnFigure::SetScrollableX>("ScrollableX", "pbScrollableX"),
          get<&vnFigure::ScrollableY>("ScrollableY"),
          put<&vnFigure::SetScrollableY>("ScrollableY", "pbScrollableY"),
          get<&vnFigure::SizeableX>("SizeableX"),
          put<&vnFigure::SetSizeableX>("SizeableX", "pbSizeableX"),
          get<&vnFigure::SizeableY>("SizeableY"),
          put<&vnFigure::SetSizeableY>("SizeableY", "pbSizeableY"),
          get<&vnFigure::MoveableX>("MoveableX"),
          put<&vnFigure::SetMoveableX>("MoveableX", "pbMoveableX"),
          get<&vnFigure::MoveableY>("MoveableY"),
          put<&vnFigure::SetMoveableY>("MoveableY", "pbMoveableY"),
          get<&vnFigure::Hidden>("Hidden"),
          put<&vnFigure::SetHidden>("Hidden", "pbHidden"),
          get<&vnFigure::Transparent>("Transparent"),
          put<&vnFigure::SetTransparent>("Transparent", "pbTransparent"),
          get<&vnFigure::EditMode>("EditMode"),
          put<&vnFigure::SetEditMode>("EditMode", "plEditMode"),
          get<&vnFigure::BackMode>("BackMode"),
          put<&vnFigure::SetBackMode>("BackMode", "plBackMode"),
          get<&vnFigure::Shape>("Shape"),
          put<&vnFigure::SetShape>("Shape", "peShape"),
          get<&vnFigure::Alignment>("Alignment"),
          put<&vnFigure::SetAlignment>("Alignment", "plAlignment"),
          get<&vnFigure::AutoSize>("AutoSize"),
          put<&vnFigure::SetAutoSize>("AutoSize", "plAutoSize"),
          get<&vnFigure::PicturePosition>("PicturePosition"),
          put<&vnFigure::SetPicturePosition>("PicturePosition", "plPicturePosition"),
          get<&vnFigure::ShapeOrientation>("ShapeOrientation"),
          put<&vnFigure::SetShapeOrientation>("ShapeOrientation", "plShapeOrientation"),
          get<&vnFigure::DrawStyle>("DrawStyle"),
          put<&vnFigure::SetDrawStyle>("DrawStyle", "plDrawStyle"),
          get<&vnFigure::DrawWidth>("DrawWidth"),
          put<&vnFigure::SetDrawWidth>("DrawWidth", "plDrawWidth"),
          get<&vnFigure::TextMarginX>("TextMarginX"),
          put<&vnFigure::SetTextMarginX>("TextMarginX", "plTextMarginX"),
          get<&vnFigure::TextMarginY>("TextMarginY"),
          put<&vnFigure::SetTextMarginY>("TextMarginY", "plTextMarginY"),
          get<&vnFigure::FillColour>("FillColour"),
          put<&vnFigure::SetFillColour>("FillColour", "plFillColour"),
          get<&vnFigure::DrawColour>("DrawColour"),
          put<&vnFigure::SetDrawColour>("DrawColour", "plDrawColour"),
          get<&vnFigure::ForeColour>("ForeColour"),
          put<&vnFigure::SetForeColour>("ForeColour", "plForeColour"),
          get<&vnFigure::UserData>("UserData"),
          put<&vnFigure::SetUserData>("UserData", "plUserData"),
          get<&vnFigure::Key>("Key"),
          put<&vnFigure::SetKey>("Key", "psKey"),
          get<&vnFigure::Tooltip>("Tooltip"),
          put<&vnFigure::SetTooltip>("Tooltip", "psTooltip"),
          get<&vnFigure::PictureIndex>("PictureIndex"),
          put<&vnFigure::SetPictureIndex>("PictureIndex", "plPictureIndex"),
          get<&vnFigure::Font>("Font"),
          putref<&vnFigure::SetFont>("Font", "poFont"),
          get<&vnFigure::Picture>("Picture"),
          putref<&vnFigure::SetPicture>("Picture", "poPicture"),
          get<&vnFigure::Shadow>("Shadow"),
          put<&vnFigure::SetShadow>("Shadow", "plShadow"),
          get<&vnFigure::Logical>("Logical"),
          put<&vnFigure::SetLogical>("Logical", "pbLogical"),
      });
  return info;
}

}  // namespace vndoc6
