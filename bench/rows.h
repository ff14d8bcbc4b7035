// Every property that the benchmarks store, told once: its key, its place in the plain structs, and
// the library's own get and put. A put is null where the library sets the value itself.
#pragma once

#include <array>
#include <tuple>
#include <utility>

#include "bench/content.h"
#include "vndoc6/automation/font.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6::bench {

template <class Struct, class Value, class Getter, class Setter>
struct Row {
  const char* key;
  Value Struct::*member;
  Getter get;
  Setter set;
};
template <class Struct, class Value, class Getter, class Setter>
Row(const char*, Value Struct::*, Getter, Setter) -> Row<Struct, Value, Getter, Setter>;

// Calls `visit(row)` for each row of a table.
template <class... Rows, class Visit>
void ForEachRow(const std::tuple<Rows...>& rows, Visit&& visit) {
  std::apply([&](const auto&... row) { (visit(row), ...); }, rows);
}

template <class S>
constexpr std::tuple kFontRows{
    Row{"F.B", &FontContent<S>::bold, &automation::Font::Bold, &automation::Font::SetBold},
    Row{"F.I", &FontContent<S>::italic, &automation::Font::Italic, &automation::Font::SetItalic},
    Row{"F.N", &FontContent<S>::name, &automation::Font::Name, &automation::Font::SetName},
    Row{"F.S", &FontContent<S>::size, &automation::Font::Size, &automation::Font::SetSize},
    Row{"F.St", &FontContent<S>::strikethrough, &automation::Font::Strikethrough,
        &automation::Font::SetStrikethrough},
    Row{"F.U", &FontContent<S>::underline, &automation::Font::Underline,
        &automation::Font::SetUnderline},
};

template <class S>
constexpr std::tuple kTaskRows{
    Row{"K", &TaskContent<S>::key, &vnTask::Key, nullptr},
    Row{"N", &TaskContent<S>::name, &vnTask::Name, &vnTask::SetName},
    Row{"D", &TaskContent<S>::description, &vnTask::Description, &vnTask::SetDescription},
    Row{"TT", &TaskContent<S>::type, &vnTask::TaskType, &vnTask::SetTaskType},
    Row{"MT", &TaskContent<S>::module, &vnTask::ModuleType, &vnTask::SetModuleType},
    Row{"TO", &TaskContent<S>::order, &vnTask::TaskOrder, &vnTask::SetTaskOrder},
    Row{"TD", &TaskContent<S>::data, &vnTask::TaskData, &vnTask::SetTaskData},
};

template <class S>
constexpr std::tuple kStepRows{
    Row{"D", &StepContent<S>::description, &vnStep::Description, &vnStep::SetDescription},
    Row{"L", &StepContent<S>::label, &vnStep::Label, &vnStep::SetLabel},
    Row{"SI", &StepContent<S>::index, &vnStep::StepIndex, nullptr},
    Row{"K", &StepContent<S>::key, &vnStep::Key, nullptr},
    Row{"CK", &StepContent<S>::container_key, &vnStep::ContainerKey, &vnStep::SetContainerKey},
    Row{"INS", &StepContent<S>::instructions, &vnStep::Instructions, &vnStep::SetInstructions},
    Row{"AT", &StepContent<S>::assign_type, &vnStep::AssignType, &vnStep::SetAssignType},
    Row{"ATo", &StepContent<S>::assign_to, &vnStep::AssignTo, &vnStep::SetAssignTo},
    Row{"TBL", &StepContent<S>::table, &vnStep::Table, &vnStep::SetTable},
    Row{"F", &StepContent<S>::form, &vnStep::Form, &vnStep::SetForm},
    Row{"DDT", &StepContent<S>::due_date_type, &vnStep::DueDateType, &vnStep::SetDueDateType},
    Row{"DUR", &StepContent<S>::duration, &vnStep::Duration, &vnStep::SetDuration},
    Row{"AC", &StepContent<S>::auto_complete, &vnStep::AutoComplete, &vnStep::SetAutoComplete},
    Row{"CE", &StepContent<S>::condition, &vnStep::ConditionExpression,
        &vnStep::SetConditionExpression},
    Row{"CS", &StepContent<S>::continue_style, &vnStep::ContinueStyle, &vnStep::SetContinueStyle},
};

template <class S>
constexpr std::tuple kLinkRows{
    Row{"K", &LinkContent<S>::key, &vnLink::Key, nullptr},
    Row{"TT", &LinkContent<S>::tooltip, &vnLink::Tooltip, &vnLink::SetTooltip},
    Row{"T", &LinkContent<S>::text, &vnLink::Text, &vnLink::SetText},
    Row{"OSK", &LinkContent<S>::origin, &vnLink::OriginStepKey, &vnLink::SetOriginStepKey},
    Row{"DSK", &LinkContent<S>::destination, &vnLink::DestinationStepKey,
        &vnLink::SetDestinationStepKey},
    Row{"CE", &LinkContent<S>::condition, &vnLink::ConditionExpression,
        &vnLink::SetConditionExpression},
};

template <class S>
constexpr std::tuple kFigureRows{
    Row{"K", &FigureContent<S>::figure_key, &vnFigure::Key, &vnFigure::SetKey},
    Row{"A", &FigureValues::alignment, &vnFigure::Alignment, &vnFigure::SetAlignment},
    Row{"AS", &FigureValues::auto_size, &vnFigure::AutoSize, &vnFigure::SetAutoSize},
    Row{"BM", &FigureValues::back_mode, &vnFigure::BackMode, &vnFigure::SetBackMode},
    Row{"DC", &FigureValues::draw_colour, &vnFigure::DrawColour, &vnFigure::SetDrawColour},
    Row{"DS", &FigureValues::draw_style, &vnFigure::DrawStyle, &vnFigure::SetDrawStyle},
    Row{"DW", &FigureValues::draw_width, &vnFigure::DrawWidth, &vnFigure::SetDrawWidth},
    Row{"EM", &FigureValues::edit_mode, &vnFigure::EditMode, &vnFigure::SetEditMode},
    Row{"FlC", &FigureValues::fill_colour, &vnFigure::FillColour, &vnFigure::SetFillColour},
    Row{"FC", &FigureValues::fore_colour, &vnFigure::ForeColour, &vnFigure::SetForeColour},
    Row{"H", &FigureValues::height, &vnFigure::Height, &vnFigure::SetHeight},
    Row{"Hid", &FigureValues::hidden, &vnFigure::Hidden, &vnFigure::SetHidden},
    Row{"Lef", &FigureValues::left, &vnFigure::Left, &vnFigure::SetLeft},
    Row{"Log", &FigureValues::logical, &vnFigure::Logical, &vnFigure::SetLogical},
    Row{"M", &FigureValues::marked, &vnFigure::Marked, &vnFigure::SetMarked},
    Row{"MX", &FigureValues::moveable_x, &vnFigure::MoveableX, &vnFigure::SetMoveableX},
    Row{"MY", &FigureValues::moveable_y, &vnFigure::MoveableY, &vnFigure::SetMoveableY},
    Row{"PI", &FigureValues::picture_index, &vnFigure::PictureIndex, &vnFigure::SetPictureIndex},
    Row{"PP", &FigureValues::picture_position, &vnFigure::PicturePosition,
        &vnFigure::SetPicturePosition},
    Row{"SX", &FigureValues::scrollable_x, &vnFigure::ScrollableX, &vnFigure::SetScrollableX},
    Row{"SY", &FigureValues::scrollable_y, &vnFigure::ScrollableY, &vnFigure::SetScrollableY},
    Row{"S", &FigureValues::selectable, &vnFigure::Selectable, &vnFigure::SetSelectable},
    Row{"Sh", &FigureValues::shadow, &vnFigure::Shadow, &vnFigure::SetShadow},
    Row{"Sp", &FigureValues::shape, &vnFigure::Shape, &vnFigure::SetShape},
    Row{"SO", &FigureValues::shape_orientation, &vnFigure::ShapeOrientation,
        &vnFigure::SetShapeOrientation},
    Row{"SzX", &FigureValues::sizeable_x, &vnFigure::SizeableX, &vnFigure::SetSizeableX},
    Row{"SzY", &FigureValues::sizeable_y, &vnFigure::SizeableY, &vnFigure::SetSizeableY},
    Row{"TMX", &FigureValues::text_margin_x, &vnFigure::TextMarginX, &vnFigure::SetTextMarginX},
    Row{"TMY", &FigureValues::text_margin_y, &vnFigure::TextMarginY, &vnFigure::SetTextMarginY},
    Row{"TT", &FigureContent<S>::tooltip_text, &vnFigure::Tooltip, &vnFigure::SetTooltip},
    Row{"Tp", &FigureValues::top, &vnFigure::Top, &vnFigure::SetTop},
    Row{"Tr", &FigureValues::transparent, &vnFigure::Transparent, &vnFigure::SetTransparent},
    Row{"UD", &FigureValues::user_data, &vnFigure::UserData, &vnFigure::SetUserData},
    Row{"W", &FigureValues::width, &vnFigure::Width, &vnFigure::SetWidth},
    Row{"ZOI", &FigureValues::z_order_index, &vnFigure::ZOrderIndex, &vnFigure::SetZOrderIndex},
};

template <class S>
constexpr std::tuple kLineRows{
    Row{"AD", &LineValues::arrow_dest, &vnLine::ArrowDest, &vnLine::SetArrowDest},
    Row{"ADS", &LineValues::arrow_dest_size, &vnLine::ArrowDestSize, &vnLine::SetArrowDestSize},
    Row{"AM", &LineValues::arrow_mid, &vnLine::ArrowMid, &vnLine::SetArrowMid},
    Row{"AMS", &LineValues::arrow_mid_size, &vnLine::ArrowMidSize, &vnLine::SetArrowMidSize},
    Row{"AO", &LineValues::arrow_orig, &vnLine::ArrowOrig, &vnLine::SetArrowOrig},
    Row{"AOS", &LineValues::arrow_orig_size, &vnLine::ArrowOrigSize, &vnLine::SetArrowOrigSize},
    Row{"BM", &LineValues::back_mode, &vnLine::BackMode, &vnLine::SetBackMode},
    Row{"DA", &LineValues::dest_adjustable, &vnLine::DestAdjustable, &vnLine::SetDestAdjustable},
    Row{"DFI", &LineValues::dest_figure_index, &vnLine::DestFigureIndex,
        &vnLine::SetDestFigureIndex},
    Row{"DX", &LineValues::dest_x, &vnLine::DestX, &vnLine::SetDestX},
    Row{"DY", &LineValues::dest_y, &vnLine::DestY, &vnLine::SetDestY},
    Row{"DC", &LineValues::draw_colour, &vnLine::DrawColour, &vnLine::SetDrawColour},
    Row{"DS", &LineValues::draw_style, &vnLine::DrawStyle, &vnLine::SetDrawStyle},
    Row{"DW", &LineValues::draw_width, &vnLine::DrawWidth, &vnLine::SetDrawWidth},
    Row{"FC", &LineValues::fore_colour, &vnLine::ForeColour, &vnLine::SetForeColour},
    Row{"H", &LineValues::hidden, &vnLine::Hidden, &vnLine::SetHidden},
    Row{"LS", &LineValues::link_style, &vnLine::LinkStyle, &vnLine::SetLinkStyle},
    Row{"L", &LineValues::logical, &vnLine::Logical, &vnLine::SetLogical},
    Row{"M", &LineValues::marked, &vnLine::Marked, &vnLine::SetMarked},
    Row{"OT", &LineValues::oriented_text, &vnLine::OrientedText, &vnLine::SetOrientedText},
    Row{"OA", &LineValues::orig_adjustable, &vnLine::OrigAdjustable, &vnLine::SetOrigAdjustable},
    Row{"OFI", &LineValues::orig_figure_index, &vnLine::OrigFigureIndex,
        &vnLine::SetOrigFigureIndex},
    Row{"OX", &LineValues::orig_x, &vnLine::OrigX, &vnLine::SetOrigX},
    Row{"OY", &LineValues::orig_y, &vnLine::OrigY, &vnLine::SetOrigY},
    Row{"OD", &LineValues::orthogonal_dynamic, &vnLine::OrthogonalDynamic,
        &vnLine::SetOrthogonalDynamic},
    Row{"R", &LineValues::rigid, &vnLine::Rigid, &vnLine::SetRigid},
    Row{"S", &LineValues::selectable, &vnLine::Selectable, &vnLine::SetSelectable},
    Row{"SJ", &LineValues::show_jump, &vnLine::ShowJump, &vnLine::SetShowJump},
    Row{"Stc", &LineValues::stretchable, &vnLine::Stretchable, &vnLine::SetStretchable},
    Row{"TS", &LineValues::text_segment, &vnLine::TextSegment, &vnLine::SetTextSegment},
    Row{"UD", &LineValues::user_data, &vnLine::UserData, &vnLine::SetUserData},
    Row{"ZOI", &LineValues::z_order_index, &vnLine::ZOrderIndex, &vnLine::SetZOrderIndex},
};

// The entries of the library's file that hold nothing in this content. The other sides store them
// as well, as empty texts.
inline constexpr std::array kEmptyInStep{"PB", "FL", "J", "Fd", "C", "P", "Attach"};
inline constexpr std::array kEmptyInFigure{"Pic"};
inline constexpr std::array kEmptyInLink{"C"};
inline constexpr std::array kEmptyInLine{"EPC"};

}  // namespace vndoc6::bench
