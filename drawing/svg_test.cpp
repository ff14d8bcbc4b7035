#include "svg.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "hops.h"
#include "model.h"
#include "router.h"

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
  EXPECT_EQ(drawing.lines[2].points, (std::vector<Point>{{240, 100}, {240, 20}, {80, 20}}));
}

TEST_F(SvgTest, LinesGoAroundFiguresInTheirWay) {
  const auto top = AddStep(u"a", 0, 0);
  AddStep(u"between", 0, 1500);
  AddLink(top, AddStep(u"b", 0, 3000));
  const std::vector<Point> points = Read().lines[0].points;
  for (const Point& point : points) {
    EXPECT_FALSE(point.x > 0 && point.x < 80 && point.y > 100 && point.y < 140);
  }
  EXPECT_GE(points.size(), 4u);
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
  const auto placed = AddStep(u"c", 300, 300);
  AddLink(first, second);
  const Drawing drawing = Read();
  EXPECT_GT(drawing.steps[0].box.top, drawing.steps[2].box.Bottom());
  EXPECT_GT(drawing.steps[1].box.top, drawing.steps[0].box.Bottom());
  EXPECT_EQ(drawing.steps[2].box.left, 20);
  EXPECT_EQ(first->Figure()->Left(), 15) << "the document stays as it is";
}

TEST_F(SvgTest, OneStepAloneAtTheUsualPlaceStaysThere) {
  AddStep(u"a", 15, 15);
  AddStep(u"b", 300, 3000);
  EXPECT_EQ(Read().steps[0].box.top, 1);
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
