#include "vndoc6/chart/figure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "tests/support/property_walk.h"
#include "tests/support/recording_listener.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vndoc6::testing::ChangeEveryProperty;
using vndoc6::testing::RecordingListener;

Text SavedText(vnFigure& figure) {
  return bag::BagTextOf([&](bag::BagWriter& writer) { Inside::Write(figure, writer); });
}

void Load(vnFigure& figure, const Text& text, const Text& key = {}) {
  Inside::Read(figure, bag::KeptText(text), key);
}

std::vector<uint8_t> BytesOf(vnFigure& figure) { return figure.Picture()->Bytes(); }

class FigureTest : public ::testing::Test {
 protected:
  FigureTest() {
    Inside::TakeDocument(*step_, document_.get());
    Inside::StoreKey(*step_, u"s");
    Inside::TakeDocument(*container_, document_.get());
    container_->SetKey(u"c");
  }

  Ref<vnFigure> StepFigure() {
    Ref<vnFigure> figure = Make<vnFigure>();
    Inside::TakeDocument(*figure, document_.get());
    figure->SetStep(step_.get());
    return figure;
  }
  Ref<vnFigure> ContainerFigure() {
    Ref<vnFigure> figure = StepFigure();
    figure->SetContainer(container_.get());
    return figure;
  }

  Ref<vnDocument> document_ = Make<vnDocument>();
  Ref<vnStep> step_ = Make<vnStep>();
  Ref<vnContainer> container_ = Make<vnContainer>();
};

TEST_F(FigureTest, SavesTheDefaultsOfAStepsFigure) {
  const Ref<vnFigure> figure = StepFigure();
  Load(*figure, u"", u"k");
  EXPECT_EQ(SavedText(*figure),
            u"K=~64\"k\":A=7:AS=0:BM=5:DC=0:DS=0:DW=1:EM=0:FlC=16777215:"
            u"F.B=F:F.I=F:F.N=~64\"Tahoma\":F.S=c9:F.St=F:F.U=F:"
            u"FC=0:H=s600:Hid=F:Lef=s15:Log=T:M=F:MX=T:MY=T:Pic=p:"
            u"PI=0:PP=9:SX=T:SY=T:S=T:Sh=0:Sp=50:SO=0:SzX=T:SzY=T:TMX=0:TMY=0:TT=~64\"\":"
            u"Tp=s15:Tr=F:UD=0:W=s1200:ZOI=0:");
}

TEST_F(FigureTest, AContainersFigureIsATransparentRectangleByDefault) {
  const Ref<vnFigure> figure = ContainerFigure();
  Load(*figure, u"");
  EXPECT_EQ(figure->Shape(), vnsRectangle);
  EXPECT_TRUE(figure->Transparent());
  Load(*figure, u"Sp=15:Tr=F:");
  EXPECT_EQ(figure->Shape(), vnsOctogon);
  EXPECT_FALSE(figure->Transparent());
}

TEST_F(FigureTest, EveryPutReportsItsNumberButKey) {
  const Ref<vnFigure> figure = StepFigure();
  Load(*figure, u"");
  RecordingListener events(*document_);
  EXPECT_THAT(ChangeEveryProperty(*figure, events), ElementsAre("Key"));
}

TEST_F(FigureTest, NegativePositionsBecomeFifteen) {
  const Ref<vnFigure> figure = StepFigure();
  figure->SetLeft(-0.5f);
  figure->SetTop(-100);
  figure->SetWidth(-10);
  figure->SetHeight(-0.5f);
  EXPECT_EQ(figure->Left(), 15);
  EXPECT_EQ(figure->Top(), 15);
  EXPECT_EQ(figure->Width(), -10);
  EXPECT_EQ(figure->Height(), -0.5f);
  figure->SetLeft(0);
  EXPECT_EQ(figure->Left(), 0);
}

TEST_F(FigureTest, ReportsToItsStepOrContainer) {
  RecordingListener events(*document_);
  const Ref<vnFigure> figure = ContainerFigure();
  EXPECT_FALSE(figure->IsStep());
  EXPECT_FALSE(figure->Step());
  figure->SetWidth(1);
  figure->SetStep(step_.get());
  EXPECT_TRUE(figure->IsStep());
  EXPECT_FALSE(figure->Container());
  figure->SetWidth(2);
  figure->SetStep(nullptr);
  figure->SetWidth(3);
  EXPECT_THAT(events.Take(), ElementsAre("ContainerChange c 3", "StepChange s 3"));

  const Ref<vnFigure> alone = Make<vnFigure>();
  alone->SetStep(step_.get());
  alone->SetWidth(4);
  EXPECT_THAT(events.Take(), IsEmpty());
}

TEST_F(FigureTest, FontIsChangedOnlyThroughTheObjectItGives) {
  const Ref<vnFigure> figure = StepFigure();
  RecordingListener events(*document_);
  const Ref<automation::Font> font = figure->Font();
  EXPECT_THAT(events.Take(), IsEmpty());

  const Ref<automation::Font> other = automation::services().make_font();
  other->SetName(u"Courier");
  figure->SetFont(other.get());
  EXPECT_THAT(events.Take(), ElementsAre("StepChange s 34"));
  EXPECT_EQ(figure->Font(), font);

  font->SetBold(true);
  automation::Put(*font, u"Name", {u"Courier"});
  EXPECT_THAT(events.Take(), ElementsAre("StepChange s 34", "StepChange s 34"));
}

TEST_F(FigureTest, DoesNotListenToAFontItDropped) {
  Ref<vnFigure> figure = StepFigure();
  const Ref<automation::Font> first = figure->Font();
  Load(*figure, u"");
  const Ref<automation::Font> second = figure->Font();
  RecordingListener events(*document_);
  first->SetBold(true);
  figure = nullptr;
  second->SetBold(true);
  EXPECT_THAT(events.Take(), IsEmpty());
}

TEST_F(FigureTest, LoadReportsFontSixTimesAndPictureOnce) {
  const Ref<vnFigure> figure = StepFigure();
  RecordingListener events(*document_);
  Load(*figure, u"A=1:FC=2:UD=3:");
  EXPECT_THAT(events.Take(), ElementsAre("StepChange s 34", "StepChange s 34", "StepChange s 34",
                                         "StepChange s 34", "StepChange s 34", "StepChange s 34",
                                         "StepChange s 35"));
}

TEST_F(FigureTest, SavesTheKeyAsKAndLoadsItFromKey) {
  const Ref<vnFigure> figure = StepFigure();
  Load(*figure, u"K=~64\"saved\":");
  EXPECT_EQ(figure->Key(), u"");
  const Text first = SavedText(*figure).substr(0, 46);
  EXPECT_TRUE(first.starts_with(u"K=~64\"{")) << automation::ToUtf8(first);
  EXPECT_NE(SavedText(*figure).substr(0, 46), first);
  EXPECT_EQ(figure->Key(), u"");

  Load(*figure, u"K=~64\"saved\":Key=~64\"other\":");
  EXPECT_EQ(figure->Key(), u"other");
  Load(*figure, u"Key=~64\"other\":", u"given");
  EXPECT_EQ(figure->Key(), u"given");
}

TEST_F(FigureTest, PicDecidesOverPicture) {
  const Ref<vnFigure> figure = StepFigure();
  Load(*figure, u"Picture=pAQ==:Pic=pAg==:");
  EXPECT_EQ(BytesOf(*figure), std::vector<uint8_t>{2});
  Load(*figure, u"Picture=pAQ==:");
  EXPECT_THAT(BytesOf(*figure), IsEmpty());
  Load(*figure, u"Picture=pAQ==:Pic=0:");
  EXPECT_THAT(BytesOf(*figure), IsEmpty());
}

TEST_F(FigureTest, PictureIsNeverNothingAndStays) {
  const Ref<vnFigure> figure = StepFigure();
  figure->SetPicture(nullptr);
  const Ref<automation::Picture> picture = figure->Picture();
  EXPECT_THAT(picture->Bytes(), IsEmpty());
  EXPECT_EQ(figure->Picture(), picture);
}

TEST_F(FigureTest, ValuesOfAnotherKindAreConvertedOrMissing) {
  const Ref<vnFigure> figure = StepFigure();
  Load(*figure, u"A=~64\"12\":BM=~64\"many\":F.S=~64\"x\":H=7:M=-1:TT=5:Tr=~64\"maybe\":");
  EXPECT_EQ(figure->Alignment(), 12);
  EXPECT_EQ(figure->BackMode(), 5);
  EXPECT_EQ(figure->Font()->Size().scaled, 90000);
  EXPECT_EQ(figure->Height(), 7);
  EXPECT_TRUE(figure->Marked());
  EXPECT_EQ(figure->Tooltip(), u"5");
  EXPECT_FALSE(figure->Transparent());
}

TEST_F(FigureTest, ACopyHasAFontOfItsOwnAndReportsItAlone) {
  const Ref<vnFigure> figure = StepFigure();
  figure->Font()->SetName(u"Courier");
  RecordingListener events(*document_);
  const Ref<vnFigure> copy = ContainerFigure();
  Inside::CopyFrom(*copy, *figure);
  EXPECT_THAT(events.Take(), IsEmpty());
  copy->Font()->SetName(u"Verdana");
  EXPECT_THAT(events.Take(), ElementsAre("ContainerChange c 34"));
  EXPECT_EQ(figure->Font()->Name(), u"Courier");

  // A host's picture, into which it loads another image.
  struct Changing : automation::Picture {
    std::vector<uint8_t> Bytes() const override { return bytes; }
    std::vector<uint8_t> bytes{3};
  };
  const Ref<Changing> picture = Make<Changing>();
  figure->SetPicture(picture.get());
  Inside::CopyFrom(*copy, *figure);
  picture->bytes = {4};
  EXPECT_EQ(copy->Picture()->Bytes(), std::vector<uint8_t>{3});
}

// What runs in a host's handler.
struct Handler : DocumentListener {
  explicit Handler(std::function<void()> run) : run_(std::move(run)) {}
  void StepChange(vnStep&, int32_t) override { run_(); }
  std::function<void()> run_;
};

TEST_F(FigureTest, AHandlerMayLetGoOfTheFigure) {
  Ref<vnFigure> figure = StepFigure();
  const Ref<automation::Font> font = figure->Font();
  Handler handler([&] { figure = nullptr; });
  document_->AddListener(&handler);
  font->SetItalic(true);
  EXPECT_FALSE(figure);

  figure = StepFigure();
  Load(*figure, u"ZOI=4:");
  EXPECT_FALSE(figure);
  document_->RemoveListener(&handler);
}

}  // namespace
}  // namespace vndoc6
