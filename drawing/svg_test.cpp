#include "svg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "hops.h"
#include "label.h"
#include "layout/chart_metric.h"
#include "model.h"
#include "text_room.h"

namespace vndoc6::drawing {
namespace {

using testing::HasSubstr;
using testing::Not;

// A document whose steps stand where the test puts them.
class SvgTest : public testing::Test {
 protected:
  SvgTest() { document_->Chart()->SetShowStepIndex(false); }

  Ref<vnStep> AddStep(const char16_t* label, float left, float top) {
    const auto step = document_->NewStep();
    step->SetLabel(label);
    step->Figure()->SetLeft(left);
    step->Figure()->SetTop(top);
    return step;
  }
  Ref<vnLink> AddLink(const Ref<vnStep>& from, const Ref<vnStep>& to) {
    const auto link = Make<vnLink>();
    link->SetDocument(document_.get());
    link->SetOriginStepKey(from->Key());
    link->SetDestinationStepKey(to->Key());
    document_->Links()->Add(link.get());
    return link;
  }
  Drawing Read() { return ReadDrawing(*document_); }
  std::string Write(const SvgOptions& options = {}) { return WriteSvg(Read(), options); }

  Ref<vnDocument> document_ = Make<vnDocument>();
};

TEST_F(SvgTest, AStepIsItsShapeItsLabelAndItsPen) {
  const auto step = AddStep(u"Pay <now>", 150, 300);
  step->Figure()->SetFillColour(0x00CCFF);
  step->Figure()->SetDrawColour(0x0000FF);
  step->Figure()->SetDrawWidth(3);
  step->Figure()->SetDrawStyle(1);
  const std::string svg = Write();
  EXPECT_THAT(
      svg, HasSubstr("<path d=\"M10 20 L90 20 L90 60 L10 60 Z\" class=\"shape\" fill=\"#ffcc00\" "
                     "stroke=\"#ff0000\" stroke-width=\"3\" stroke-dasharray=\"6 3\"/>"));
  EXPECT_THAT(svg, HasSubstr("Pay &lt;now&gt;</tspan>"));
  EXPECT_THAT(svg, HasSubstr("<title>Pay &lt;now&gt; (process)"));
}

TEST_F(SvgTest, EveryShapeIsDrawnWithinItsBox) {
  for (const auto& value : automation::DescribeEnum<EnumVantrelShapes>().values) {
    const Outline& outline = OutlineOf(value.value);
    EXPECT_EQ(outline.shape, value.value) << value.name;
    for (int quarters = 0; quarters < 4; ++quarters) {
      const std::string path = PathData(outline.border, {0, 0, 100, 100}, quarters);
      const std::regex command("[A-Z][-0-9. ]*");
      const std::regex shape("(M|L|Q|C|A|Z)( ?-?[0-9.]+)*");
      for (std::sregex_iterator part(path.begin(), path.end(), command), end; part != end; ++part) {
        std::string text = part->str();
        while (text.ends_with(' ')) text.pop_back();
        EXPECT_TRUE(std::regex_match(text, shape)) << value.name << ": " << text;
      }
      const std::regex number("-?[0-9.]+");
      for (std::sregex_iterator it(path.begin(), path.end(), number), end; it != end; ++it) {
        EXPECT_GE(std::stod(it->str()), -3) << value.name;
        EXPECT_LE(std::stod(it->str()), 103) << value.name;
      }
    }
  }
  EXPECT_EQ(OutlineOf(33).shape, vnsRectangle);
}

TEST_F(SvgTest, StepNumbersShowWhenTheChartShowsThem) {
  document_->Chart()->SetShowStepIndex(true);
  document_->Chart()->SetStepIndexSeparator(u": ");
  AddStep(u"Ask", 0, 0);
  EXPECT_THAT(Write(), HasSubstr("1: Ask</tspan>"));
}

TEST_F(SvgTest, RightToLeftLabelsSaySo) {
  AddStep(u"קבלה", 0, 0);
  EXPECT_THAT(Write(), HasSubstr("direction=\"rtl\""));
}

TEST_F(SvgTest, PicturesAreInTheFile) {
  const auto step = AddStep(u"Seen", 0, 0);
  const auto picture =
      automation::services().make_picture({'G', 'I', 'F', '8', '9', 'a', 9, 0, 9, 0});
  step->Figure()->SetPicture(picture.get());
  EXPECT_THAT(Write(), HasSubstr("href=\"data:image/gif;base64,R0lGODlhCQAJAA==\""));
}

TEST_F(SvgTest, HiddenFiguresAndLinesOfMissingStepsAreLeftOut) {
  const auto first = AddStep(u"Seen", 0, 0);
  const auto second = AddStep(u"Unseen", 0, 3000);
  AddLink(first, second);
  AddLink(first, first)->SetDestinationStepKey(u"nowhere");
  second->Figure()->SetHidden(true);
  EXPECT_TRUE(Read().lines.empty());
  EXPECT_THAT(Write(), Not(HasSubstr("Unseen")));
}

TEST_F(SvgTest, ALineGoesThroughItsOwnPoints) {
  const auto link = AddLink(AddStep(u"a", 0, 0), AddStep(u"b", 3000, 1500));
  const auto line = link->Line();
  line->SetExtraPointX(1, 1500);
  line->SetExtraPointY(1, 300);
  line->SetExtraPointX(2, 1500);
  line->SetExtraPointY(2, 1800);
  const std::vector<Point> expected = {{80, 20}, {100, 20}, {100, 120}, {200, 120}};
  EXPECT_EQ(Read().lines[0].points, expected);
}

TEST_F(SvgTest, LinesWithoutPointsTakeShortWaysOfRightAngles) {
  const auto top = AddStep(u"a", 0, 0);
  const auto below = AddStep(u"b", 0, 1500);
  const auto aside = AddStep(u"c", 3000, 1500);
  AddLink(top, below);
  AddLink(below, aside);
  AddLink(aside, top);
  const Drawing drawing = Read();
  EXPECT_EQ(drawing.lines[0].points, (std::vector<Point>{{40, 40}, {40, 100}}));
  EXPECT_EQ(drawing.lines[1].points, (std::vector<Point>{{80, 120}, {200, 120}}));
  EXPECT_EQ(drawing.lines[2].points,
            (std::vector<Point>{{200, 108}, {94, 108}, {94, 32}, {80, 32}}));
}

// The drawing as the metric reads it: steps, lines and labels under their own numbers.
ChartMetric Measured(const Drawing& drawing) {
  ChartLayout layout;
  std::vector<LayoutEdge> edges;
  layout.boxes.resize(drawing.steps.size());
  for (const Figure& step : drawing.steps) layout.boxes[step.step - 1] = step.box;
  for (const Line& line : drawing.lines) {
    layout.lines.push_back(line.points);
    layout.labels.push_back(line.label_box);
    edges.push_back({line.from - 1, line.to - 1});
  }
  return ChartMeasurer(layout, edges).Measure();
}

// A grid of steps that stand where a host put them, linked criss-cross; the last ones were added
// without a place.
TEST_F(SvgTest, LinesBetweenPlacedStepsKeepClearOfAllElse) {
  std::vector<Ref<vnStep>> steps;
  for (size_t i = 0; i < 16; ++i) {
    const auto column = static_cast<float>(i % 4), row = static_cast<float>(i / 4);
    steps.push_back(AddStep(u"step", column * 2850 + static_cast<float>(i % 3) * 150,
                            row * 1650 + static_cast<float>(i % 2) * 150));
  }
  for (size_t i = 0; i < 3; ++i) steps.push_back(AddStep(u"new", 15, 15));
  for (size_t i = 0; i < 19; ++i) {
    AddLink(steps[i], steps[(i * 7 + 5) % 19])->SetText(u"ok");
    AddLink(steps[i], steps[(i + 1) % 16]);
  }
  const ChartMetric metric = Measured(Read());
  EXPECT_EQ(metric.lines_through_boxes, 0);
  EXPECT_EQ(metric.box_overlaps, 0);
  EXPECT_EQ(metric.short_bends, 0);
  EXPECT_LE(metric.covered_labels, 1);
}

TEST(Hops, LevelPartsHopOverUprightOnes) {
  Line level, upright;
  level.points = {{0, 50}, {100, 50}};
  upright.points = {{40, 0}, {40, 100}};
  level.hops = upright.hops = true;
  const Hops hops = FindHops({level, upright});
  EXPECT_EQ(hops[0][0], std::vector<double>{40});
  EXPECT_TRUE(hops[1][0].empty());
}

TEST(Hops, AreGivenUpWhereTheyWouldBeVeryMany) {
  std::vector<Line> lines(120);
  for (size_t i = 0; i < lines.size(); ++i) {
    const double at = 20.0 * static_cast<double>(i / 2);
    lines[i].hops = true;
    lines[i].points = i % 2 == 0 ? std::vector<Point>{{-50, at}, {2000, at}}
                                 : std::vector<Point>{{at, -50}, {at, 2000}};
  }
  for (const auto& line : FindHops(lines)) EXPECT_TRUE(line[0].empty());
}

TEST_F(SvgTest, LabelsStandBesideTheirLinesWhereNothingElseIs) {
  const auto top = AddStep(u"a", 0, 0);
  const auto below = AddStep(u"b", 0, 1800);
  AddStep(u"in the way", 900, 700);
  AddLink(top, below)->SetText(u"yes");
  const Drawing drawing = Read();
  const Box& label = drawing.lines[0].label_box;
  EXPECT_GT(label.width, 0);
  EXPECT_LT(label.Right(), 40) << "left of the line, for a step is on its right";
  EXPECT_LT(label.Bottom(), 80) << "near its beginning";
  EXPECT_LE(drawing.extent.left, label.left);
}

TEST_F(SvgTest, StepsThatWereNeverPlacedAreLaidOut) {
  const auto first = AddStep(u"a", 15, 15);
  const auto second = AddStep(u"b", 15, 15);
  const auto placed = AddStep(u"c", 3000, 300);
  AddLink(first, second);
  const Drawing drawing = Read();
  EXPECT_GT(drawing.steps[0].box.top, drawing.steps[2].box.Bottom());
  EXPECT_GT(drawing.steps[1].box.top, drawing.steps[0].box.Bottom());
  EXPECT_EQ(drawing.steps[2].box.left, 200);
  EXPECT_EQ(first->Figure()->Left(), 15) << "the document stays as it is";
  AddLink(placed, first);
  AddStep(u"far below", 300, 90000);
  const Drawing near = Read();
  EXPECT_EQ(near.steps[0].box.CentreX(), near.steps[2].box.CentreX());
  EXPECT_LT(near.steps[1].box.Bottom(), 300) << "near what they are linked to";
}

TEST_F(SvgTest, OneStepAloneAtTheUsualPlaceStaysThere) {
  AddStep(u"a", 15, 15);
  AddStep(u"b", 300, 3000);
  EXPECT_EQ(Read().steps[0].box.top, 1);
}

TEST_F(SvgTest, EveryShapeHoldsItsLabelInLettersOfOneSize) {
  for (const auto& value : automation::DescribeEnum<EnumVantrelShapes>().values) {
    for (const bool placed : {false, true}) {
      Figure figure;
      figure.label = u"Check the order once more";
      figure.outline = &OutlineOf(value.value);
      figure.box = {0, 0, 80, 40};
      if (placed) {
        GrowToLabel(figure);
      } else {
        FitToLabel(figure);
      }
      const SetLabel label = LabelOf(figure);
      double top = label.room.CentreY() - label.Height(figure.font.size) / 2;
      EXPECT_LE(label.Height(figure.font.size), label.room.height) << value.name;
      for (const Text& line : label.lines) {
        const double width = TextWidth(line, false) * figure.font.size;
        const Box place{label.room.CentreX() - width / 2, top + 3, width, 8};
        EXPECT_TRUE(HoldsLine(*figure.outline, figure.box, 0, place)) << value.name;
        top += figure.font.size * kLineHeight;
      }
      EXPECT_LT(figure.box.width * figure.box.height, 60'000) << value.name;
    }
  }
  const auto step = AddStep(u"A label that is far too long for a step of the usual size", 0, 0);
  EXPECT_THAT(Write(), HasSubstr("class=\"ink\" fill=\"#000000\"><tspan")) << "of the usual size";
  EXPECT_GT(Read().steps[0].box.height, 40);
  document_->Chart()->SetEllipsis(true);
  EXPECT_EQ(Read().steps[0].box.height, 40) << "a chart that cuts its labels keeps its sizes";
}

TEST_F(SvgTest, ThemesTitleAndLegendAreThereWhenAskedFor) {
  document_->Details()->SetTitle(u"Pay & go");
  document_->Details()->SetRevision(3);
  AddStep(u"a", 0, 0)->Figure()->SetFillColour(0x00CCFF);
  AddStep(u"b", 0, 1500)->Figure()->SetShape(vnsDecision);
  const std::string usual = Write();
  EXPECT_THAT(usual, Not(HasSubstr("Revision")));
  SvgOptions options;
  options.title = options.legend = true;
  options.theme = Theme::kDark;
  const std::string dark = Write(options);
  EXPECT_THAT(dark, HasSubstr(">Pay &amp; go<tspan"));
  EXPECT_THAT(dark, HasSubstr("Revision 3</tspan>"));
  EXPECT_THAT(dark, HasSubstr(">process</text>"));
  EXPECT_THAT(dark, HasSubstr(">decision</text>"));
  EXPECT_THAT(dark, HasSubstr("fill=\"#ffcc00\""));
  EXPECT_THAT(dark, HasSubstr("fill=\"#1b2029\""));
  options.theme = Theme::kPrint;
  EXPECT_THAT(Write(options), Not(HasSubstr("#ffcc00")));
}

TEST_F(SvgTest, ALargeChartTakesSheetsWithConnectors) {
  auto before = AddStep(u"step", 15, 15);
  for (int i = 1; i < 40; ++i) {
    const auto next = AddStep(u"step", 15, 15);
    AddLink(before, next);
    before = next;
  }
  SvgOptions options;
  options.paper = Paper::kA4;
  const std::vector<std::string> sheets = SvgPages(*document_, options);
  ASSERT_EQ(sheets.size(), 3u);
  const auto count = [&](size_t sheet, const std::string& what) {
    size_t found = 0;
    for (size_t at = 0; (at = sheets[sheet].find(what, at)) != std::string::npos; ++at) ++found;
    return found;
  };
  size_t steps = 0;
  for (size_t i = 0; i < sheets.size(); ++i) {
    steps += count(i, "<g class=\"step\"");
    EXPECT_EQ(count(i, "<g class=\"connector\""), i == 1 ? 2u : 1u);
    EXPECT_THAT(sheets[i], HasSubstr("width=\"793.7\" height=\"1122.52\""));
    EXPECT_THAT(sheets[i], HasSubstr("Sheet " + std::to_string(i + 1) + " of 3"));
  }
  EXPECT_EQ(steps, 40u) << "no step is cut";
}

TEST_F(SvgTest, StepsOfARoleShareALane) {
  const char16_t* const roles[] = {u"Clerk", u"Boss", u"Clerk"};
  Ref<vnStep> before;
  for (const char16_t* const role : roles) {
    const auto step = AddStep(u"step", 15, 15);
    step->PerformedBy()->Add(Variant(role));
    if (before) AddLink(before, step);
    before = step;
  }
  for (const Direction direction : {Direction::kDown, Direction::kRight}) {
    const Drawing drawing = ReadDrawing(*document_, {true, direction, Lanes::kRole});
    ASSERT_EQ(drawing.containers.size(), 2u);
    const Box &first = drawing.containers[0].box, &second = drawing.containers[1].box;
    const bool down = direction == Direction::kDown;
    EXPECT_EQ(down ? first.Right() : first.Bottom(), down ? second.left : second.top);
    for (const Figure& step : drawing.steps) {
      const Text role = roles[step.step - 1];
      const Figure& lane = drawing.containers[drawing.containers[0].label == role ? 0 : 1];
      EXPECT_EQ(lane.label, role);
      EXPECT_EQ(Union(lane.box, step.box).width, lane.box.width);
      EXPECT_EQ(Union(lane.box, step.box).height, lane.box.height);
    }
  }
}

TEST_F(SvgTest, GridAndPageMarginsAreDrawnWhenAskedFor) {
  AddStep(u"a", 0, 0);
  EXPECT_THAT(Write(), Not(HasSubstr("<pattern")));
  SvgOptions options;
  options.grid = options.page_margins = true;
  EXPECT_THAT(Write(options), HasSubstr("<pattern id=\"grid\" width=\"24\" height=\"24\""));
  EXPECT_THAT(Write(options), HasSubstr("<pattern id=\"pages\" width=\"200\" height=\"200\""));
}

TEST_F(SvgTest, PicturesThatBrowsersDoNotShowLeaveANamedFrame) {
  const auto step = AddStep(u"A", 0, 0);
  std::vector<uint8_t> wmf = {1, 0, 9, 0, 0, 3};
  wmf.resize(18);
  step->Figure()->SetPicture(automation::services().make_picture(wmf).get());
  const std::string svg = Write();
  EXPECT_THAT(svg, HasSubstr("<title>A WMF picture, which is not shown</title><rect"));
  EXPECT_THAT(svg, HasSubstr(">WMF</text>"));
}

// What a host may store must not break the picture.
TEST_F(SvgTest, SenselessValuesGiveAWholeSvg) {
  const auto step = AddStep(u"\xD800 <", 1e30f, 1e30f);
  step->Figure()->SetWidth(-1e30f);
  step->Figure()->SetHeight(0);
  step->Figure()->SetShape(static_cast<EnumVantrelShapes>(-5));
  step->Figure()->SetDrawWidth(-100000);
  step->Figure()->SetShapeOrientation(-7);
  step->Figure()->SetAlignment(2147483647);
  step->Figure()->Font()->SetName(u"'\"><script>");
  step->Figure()->Font()->SetSize(automation::Currency{-1});
  const auto link = AddLink(step, step);
  link->Line()->SetTextSegment(-3);
  link->SetText(u"again");
  link->Line()->SetOrigX(2147483647);
  link->Line()->SetDestX(-2147483647);
  const std::string svg = Write();
  SvgOptions paper;
  paper.paper = Paper::kA4;
  EXPECT_LT(SvgPages(*document_, paper).size(), 5'000u);
  EXPECT_THAT(svg, Not(HasSubstr("nan")));
  EXPECT_THAT(svg, Not(HasSubstr("inf")));
  EXPECT_THAT(svg, Not(HasSubstr("<script")));
  EXPECT_TRUE(svg.ends_with("</svg>\n"));
}

TEST_F(SvgTest, AnEmptyDocumentIsAnEmptyChart) {
  EXPECT_THAT(Write(), HasSubstr("viewBox=\"-24 -24 48 48\""));
}

}  // namespace
}  // namespace vndoc6::drawing
