#include "vndoc6/chart/figure.h"

#include "bag/bag_reader.h"
#include "bag/bag_writer.h"
#include "bag/row_text.h"
#include "chart/font_text.h"
#include "core/scope.h"
#include "platform/keys.h"
#include "schema/rows.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/core/detail_id.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/step.h"

namespace vndoc6 {
namespace {

// Hosts rely on this for positions only; sizes may be negative.
float Position(float value) { return value < 0 ? 15.0f : value; }

}  // namespace

struct vnFigure::Schema {
  static constexpr auto kRows = [] {
    using namespace schema;
    return std::tuple{
        property<&vnFigure::Document>("Document").not_content("leads back to the root"),
        property<&vnFigure::Step, &vnFigure::SetStep>("Step", "poStep")
            .not_content("leads back to the owner"),
        property<&vnFigure::IsStep>("IsStep").not_content("what the owner is"),
        property<&vnFigure::Container, &vnFigure::SetContainer>("Container", "poContainer")
            .not_content("leads back to the owner"),
        property<&vnFigure::Left, &vnFigure::SetLeft>("Left", "pnLeft")
            .field(&Values::left, "Lef")
            .missing(15)
            .reports(vndLeft),
        property<&vnFigure::Top, &vnFigure::SetTop>("Top", "pnTop")
            .field(&Values::top, "Tp")
            .missing(15)
            .reports(vndTop),
        property<&vnFigure::Width, &vnFigure::SetWidth>("Width", "pnWidth")
            .field(&Values::width, "W")
            .missing(1200)
            .reports(vndWidth),
        property<&vnFigure::Height, &vnFigure::SetHeight>("Height", "pnHeight")
            .field(&Values::height, "H")
            .missing(600)
            .reports(vndHeight),
        property<&vnFigure::ZOrderIndex, &vnFigure::SetZOrderIndex>("ZOrderIndex", "plZOrderIndex")
            .field(&Values::z_order_index, "ZOI")
            .reports(vndZOrderIndex),
        property<&vnFigure::Marked, &vnFigure::SetMarked>("Marked", "pbMarked")
            .field(&Values::marked, "M")
            .reports(vndMarked),
        property<&vnFigure::Selectable, &vnFigure::SetSelectable>("Selectable", "pbSelectable")
            .field(&Values::selectable, "S")
            .missing(true)
            .reports(vndSelectable),
        property<&vnFigure::ScrollableX, &vnFigure::SetScrollableX>("ScrollableX", "pbScrollableX")
            .field(&Values::scrollable_x, "SX")
            .missing(true)
            .reports(vndScrollableX),
        property<&vnFigure::ScrollableY, &vnFigure::SetScrollableY>("ScrollableY", "pbScrollableY")
            .field(&Values::scrollable_y, "SY")
            .missing(true)
            .reports(vndScrollableY),
        property<&vnFigure::SizeableX, &vnFigure::SetSizeableX>("SizeableX", "pbSizeableX")
            .field(&Values::sizeable_x, "SzX")
            .missing(true)
            .reports(vndSizeableX),
        property<&vnFigure::SizeableY, &vnFigure::SetSizeableY>("SizeableY", "pbSizeableY")
            .field(&Values::sizeable_y, "SzY")
            .missing(true)
            .reports(vndSizeableY),
        property<&vnFigure::MoveableX, &vnFigure::SetMoveableX>("MoveableX", "pbMoveableX")
            .field(&Values::moveable_x, "MX")
            .missing(true)
            .reports(vndMoveableX),
        property<&vnFigure::MoveableY, &vnFigure::SetMoveableY>("MoveableY", "pbMoveableY")
            .field(&Values::moveable_y, "MY")
            .missing(true)
            .reports(vndMoveableY),
        property<&vnFigure::Hidden, &vnFigure::SetHidden>("Hidden", "pbHidden")
            .field(&Values::hidden, "Hid")
            .reports(vndHidden),
        property<&vnFigure::Transparent, &vnFigure::SetTransparent>("Transparent", "pbTransparent")
            .field(&Values::transparent, "Tr")
            .reports(vndTransparent),
        property<&vnFigure::EditMode, &vnFigure::SetEditMode>("EditMode", "plEditMode")
            .field(&Values::edit_mode, "EM")
            .reports(vndEditMode),
        property<&vnFigure::BackMode, &vnFigure::SetBackMode>("BackMode", "plBackMode")
            .field(&Values::back_mode, "BM")
            .missing(5)
            .reports(vndBackMode),
        property<&vnFigure::Shape, &vnFigure::SetShape>("Shape", "peShape")
            .field(&Values::shape, "Sp")
            .missing(vnsProcess)
            .reports(vndShape),
        property<&vnFigure::Alignment, &vnFigure::SetAlignment>("Alignment", "plAlignment")
            .field(&Values::alignment, "A")
            .missing(7)
            .reports(vndAlignment),
        property<&vnFigure::AutoSize, &vnFigure::SetAutoSize>("AutoSize", "plAutoSize")
            .field(&Values::auto_size, "AS")
            .reports(vndAutoSize),
        property<&vnFigure::PicturePosition, &vnFigure::SetPicturePosition>("PicturePosition",
                                                                            "plPicturePosition")
            .field(&Values::picture_position, "PP")
            .missing(9)
            .reports(vndPicturePosition),
        property<&vnFigure::ShapeOrientation, &vnFigure::SetShapeOrientation>("ShapeOrientation",
                                                                              "plShapeOrientation")
            .field(&Values::shape_orientation, "SO")
            .reports(vndShapeOrientation),
        property<&vnFigure::DrawStyle, &vnFigure::SetDrawStyle>("DrawStyle", "plDrawStyle")
            .field(&Values::draw_style, "DS")
            .reports(vndDrawStyle),
        property<&vnFigure::DrawWidth, &vnFigure::SetDrawWidth>("DrawWidth", "plDrawWidth")
            .field(&Values::draw_width, "DW")
            .missing(1)
            .reports(vndDrawWidth),
        property<&vnFigure::TextMarginX, &vnFigure::SetTextMarginX>("TextMarginX", "plTextMarginX")
            .field(&Values::text_margin_x, "TMX")
            .reports(vndTextMarginX),
        property<&vnFigure::TextMarginY, &vnFigure::SetTextMarginY>("TextMarginY", "plTextMarginY")
            .field(&Values::text_margin_y, "TMY")
            .reports(vndTextMarginY),
        property<&vnFigure::FillColour, &vnFigure::SetFillColour>("FillColour", "plFillColour")
            .field(&Values::fill_colour, "FlC")
            .missing(16777215)
            .reports(vndFillColour),
        property<&vnFigure::DrawColour, &vnFigure::SetDrawColour>("DrawColour", "plDrawColour")
            .field(&Values::draw_colour, "DC")
            .reports(vndDrawColour),
        property<&vnFigure::ForeColour, &vnFigure::SetForeColour>("ForeColour", "plForeColour")
            .field(&Values::fore_colour, "FC")
            .reports(vndForeColour),
        property<&vnFigure::UserData, &vnFigure::SetUserData>("UserData", "plUserData")
            .field(&Values::user_data, "UD")
            .reports(vndUserData),
        // Saved as "K" but loaded from "Key": a figure's key lives as long as the figure, and its
        // text
        // is told apart by a key of its own on every save.
        property<&vnFigure::Key, &vnFigure::SetKey>("Key", "psKey")
            .identity(&vnFigure::key_, "K")
            .read_as("Key")
            .departs(kFreshWhenEmpty),
        property<&vnFigure::Tooltip, &vnFigure::SetTooltip>("Tooltip", "psTooltip")
            .field(&Values::tooltip, "TT")
            .reports(vndTooltip),

        // Hosts keep the index only while they run and rely on it not coming back.
        property<&vnFigure::PictureIndex, &vnFigure::SetPictureIndex>("PictureIndex",
                                                                      "plPictureIndex")
            .field(&Values::picture_index, "PI")
            .never_read()
            .reports(vndPictureIndex),
        property<&vnFigure::Font, &vnFigure::SetFont>("Font", "poFont")
            .own_entry("F", &vnFigure::WriteFont, &vnFigure::LoadFont),
        property<&vnFigure::Picture, &vnFigure::SetPicture>("Picture", "poPicture")
            .own_entry("Pic", &vnFigure::WritePicture, &vnFigure::LoadPicture),
        property<&vnFigure::Shadow, &vnFigure::SetShadow>("Shadow", "plShadow")
            .field(&Values::shadow, "Sh")
            .reports(vndShadow),
        property<&vnFigure::Logical, &vnFigure::SetLogical>("Logical", "pbLogical")
            .field(&Values::logical, "Log")
            .missing(true)
            .reports(vndLogical),
    };
  }();
  // In every file: never change it.
  static constexpr std::string_view kFileOrder[] = {
      "K",   "A",   "AS",  "BM",  "DC",  "DS",  "DW", "EM", "FlC", "F",  "FC", "H",  "Hid",
      "Lef", "Log", "M",   "MX",  "MY",  "Pic", "PI", "PP", "SX",  "SY", "S",  "Sh", "Sp",
      "SO",  "SzX", "SzY", "TMX", "TMY", "TT",  "Tp", "Tr", "UD",  "W",  "ZOI"};
};

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
  ReportChange(schema::Store<Schema>(values_, member, value));
}
template void vnFigure::Put(bool Values::*, const bool&);
template void vnFigure::Put(float Values::*, const float&);
template void vnFigure::Put(int32_t Values::*, const int32_t&);
template void vnFigure::Put(EnumVantrelShapes Values::*, const EnumVantrelShapes&);
template void vnFigure::Put(Text Values::*, const Text&);

// A host's handler may let go of this figure.
void vnFigure::ReportChange(int32_t detail_id) {
  Scope* const scope = document_scope();
  if (scope == nullptr) return;
  if (vnStep* const step = step_.get()) {
    scope->Report<&DocumentListener::StepChange>(*step, detail_id);
  } else if (vnContainer* const container = container_.get()) {
    scope->Report<&DocumentListener::ContainerChange>(*container, detail_id);
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

void vnFigure::Write(bag::BagWriter& writer) {
  schema::WriteEntries<Schema>(writer, *this, values_);
}

void vnFigure::Read(const bag::KeptText& text, const Text& key) {
  const automation::Ref<vnFigure> alive(this);  // what is reported runs a host's code
  bag::BagReader reader(text);
  schema::ReadAtOnce<Schema>(reader, *this, values_, key);
  schema::ReadEntries<Schema>(reader, *this, values_);
  if (is_step_) return;
  values_.shape = static_cast<EnumVantrelShapes>(reader.GetLong("Sp", vnsRectangle));
  values_.transparent = reader.GetBoolean("Tr", true);
}

void vnFigure::WriteFont(bag::BagWriter& writer) { WriteFontText(writer, *Font()); }
void vnFigure::WritePicture(bag::BagWriter& writer) {
  writer.AddPicture("Pic", Picture()->Bytes());
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

void vnFigure::CopyFrom(const vnFigure& other) {
  key_ = other.key_;
  values_ = other.values_;
  KeepFont(CopyFont(other.font_.get()).get());
  picture_ = CopyPicture(other.picture_.get()).get();
}

const automation::ClassInfo& vnFigure::classInfo() {
  using namespace schema;
  static const ClassInfo info = describe<vnFigure>(
      "vnFigure", "The drawn shape of a step or a container.",
      {0x9E9EEEE5, 0xF83E, 0x4154, {0x83, 0x06, 0x6F, 0xDE, 0x38, 0x83, 0x95, 0x9B}},
      {0x743DD9DA, 0xD113, 0x4C1D, {0xAC, 0xBD, 0x80, 0xC4, 0x80, 0x2C, 0xC5, 0x14}},
      Schema::kRows);
  return info;
}

}  // namespace vndoc6
