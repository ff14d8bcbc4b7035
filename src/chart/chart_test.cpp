#include "vndoc6/chart/chart.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "tests/support/property_walk.h"
#include "tests/support/recording_listener.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using vndoc6::testing::ChangeEveryProperty;
using vndoc6::testing::RecordingListener;

std::string SavedText(vnChart& chart) {
  return automation::ToUtf8(
      bag::BagTextOf([&](bag::BagWriter& writer) { Inside::Write(chart, writer); }));
}

Ref<vnChart> Loaded(const Text& text) {
  Ref<vnChart> chart = Make<vnChart>();
  Inside::Read(*chart, bag::KeptText(text));
  return chart;
}

TEST(ChartTest, SavesTheDefaults) {
  EXPECT_EQ(SavedText(*Loaded(u"")),
            "AD=T:AO=T:A=7:ArD=3:ArDS=0:ArM=0:ArMS=0:ArO=0:ArOS=0:AS=0:BC=16777215:BM=2:"
            "CPHEX=~64\"\":CH=0:CW=0:DC=0:DS=0:DW=1:EM=0:E=F:FlC=16777215:"
            "F.B=F:F.I=F:F.N=~64\"Tahoma\":F.S=c9:F.St=F:F.U=F:"
            "FC=0:GC=0:GSX=360:GSY=360:H=F:OT=F:OD=F:PicP=9:SS=~64\" - \":S=F:SC=12632256:"
            "SOffX=120:SOffY=120:Sh=50:ShO=0:SG=T:SJ=0:STI=T:STT=T:STG=T:TIS=~64\" - \":Tr=F:"
            "PH=0:PW=0:SPM=F:PMC=14737632:LS=0:");
}

TEST(ChartTest, PutsReportTheirNumbers) {
  const Ref<vnDocument> document = Make<vnDocument>();
  const Ref<vnChart> chart = document->Chart();
  RecordingListener events(*document);
  // Two of these are only the published spelling: vndShadowOffSetX, vndShowPageMargin.
  EXPECT_THAT(
      ChangeEveryProperty(*chart, events),
      ElementsAre("Transparent -1", "ArrowDestSize 55", "ShadowOffsetX 40", "ShowPageMargins 87"));
  chart->SetTransparent(false);
  EXPECT_THAT(events.Take(), ElementsAre("ChartChange vnChart 0"));
}

TEST(ChartTest, ReadsShadowOffsetXAndMarginsColourUnderOtherKeys) {
  EXPECT_EQ(Loaded(u"SOfftX=7:")->ShadowOffsetX(), 7);
  EXPECT_EQ(Loaded(u"SOffX=7:")->ShadowOffsetX(), 120);
  EXPECT_EQ(Loaded(u"PMC=255:")->PageMarginsColour(), 14737632);
  EXPECT_EQ(Loaded(u"SPM=F:PMC=255:")->PageMarginsColour(), 14737632);
  EXPECT_THAT(SavedText(*Loaded(u"SPM=F:")), HasSubstr(":SPM=F:PMC=0:"));
  EXPECT_THAT(SavedText(*Loaded(u"SPM=T:")), HasSubstr(":SPM=T:PMC=-1:"));
}

TEST(ChartTest, ZeroReadsAsTheUsualValueAndStaysThat) {
  const Ref<vnDocument> document = Make<vnDocument>();
  const Ref<vnChart> chart = document->Chart();
  chart->SetBackColour(0);
  chart->SetPageMarginsColour(0);
  // Saving reads the background alone.
  EXPECT_THAT(SavedText(*chart), HasSubstr("BC=16777215:"));
  EXPECT_THAT(SavedText(*chart), HasSubstr("PH=0:PW=0:SPM=F:PMC=0:"));

  RecordingListener events(*document);
  EXPECT_EQ(chart->PageHeight(), 3000);
  EXPECT_EQ(chart->PageWidth(), 3000);
  EXPECT_EQ(chart->PageMarginsColour(), 14737632);
  EXPECT_THAT(events.Take(), IsEmpty());
  EXPECT_THAT(SavedText(*chart), HasSubstr("PH=3000:PW=3000:SPM=F:PMC=14737632:"));
}

TEST(ChartTest, TakesTheFontItIsGivenAndDoesNotListen) {
  const Ref<vnDocument> document = Make<vnDocument>();
  const Ref<vnChart> chart = document->Chart();
  RecordingListener events(*document);
  const Ref<automation::Font> font = automation::services().make_font();
  chart->SetFont(font.get());
  EXPECT_THAT(events.Take(), ElementsAre("ChartChange vnChart 34"));
  EXPECT_EQ(chart->Font(), font);

  font->SetBold(true);
  Inside::Read(*chart, bag::KeptText(TextView(u"F.I=T:")));
  EXPECT_THAT(events.Take(), IsEmpty());
  EXPECT_EQ(chart->Font(), font);
  EXPECT_FALSE(font->Bold());
  EXPECT_TRUE(font->Italic());
}

TEST(ChartTest, PictureIsNothingUnlessThereIsOne) {
  EXPECT_FALSE(Loaded(u"")->Picture());
  const Ref<vnChart> chart = Loaded(u"Pic=pAQ==:");
  EXPECT_THAT(chart->Picture()->Bytes(), ElementsAre(1));
  Inside::Read(*chart, bag::KeptText(TextView(u"Pic=~64\"x\":")));
  EXPECT_FALSE(chart->Picture());
}

}  // namespace
}  // namespace vndoc6
