#include "vndoc6/chart/line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "automation/inside.h"
#include "bag/bag_writer.h"
#include "tests/support/property_walk.h"
#include "tests/support/recording_listener.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/link.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using vndoc6::testing::ChangeEveryProperty;
using vndoc6::testing::RecordingListener;

Text SavedText(vnLine& line) {
  return bag::BagTextOf([&](bag::BagWriter& writer) { Inside::Write(line, writer); });
}

// The number of the error that the call raises; 0 for none.
template <class Call>
int32_t ErrorOf(Call&& call) {
  try {
    call();
    return 0;
  } catch (const automation::Error& error) {
    return error.number();
  }
}

class LineTest : public ::testing::Test {
 protected:
  LineTest() {
    link_->SetDocument(document_.get());
    Inside::StoreKey(*link_, u"l");
  }
  Ref<vnLine> Loaded(const Text& text) {
    Ref<vnLine> line = Make<vnLine>();
    line->SetDocument(document_.get());
    line->SetLink(link_.get());
    Inside::Read(*line, bag::KeptText(text));
    return line;
  }

  Ref<vnDocument> document_ = Make<vnDocument>();
  Ref<vnLink> link_ = Make<vnLink>();
};

TEST_F(LineTest, SavesTheDefaults) {
  EXPECT_EQ(SavedText(*Loaded(u"")),
            u"AD=3:ADS=0:AM=0:AMS=0:AO=0:AOS=0:BM=2:DA=F:DFI=0:DX=0:DY=0:DC=0:DS=0:DW=1:"
            u"F.B=F:F.I=F:F.N=~64\"Tahoma\":F.S=c9:F.St=F:F.U=F:"
            u"FC=0:H=F:LS=0:L=T:M=F:OT=F:OA=F:OFI=0:OX=0:OY=0:OD=F:R=F:S=T:SJ=-1:Stc=T:TS=0:"
            u"UD=0:ZOI=0:EPC=0:");
}

TEST_F(LineTest, PutsReportTheirNumbers) {
  const Ref<vnLine> line = Loaded(u"");
  RecordingListener events(*document_);
  // One of these is only the published spelling: vndStrechable.
  EXPECT_THAT(
      ChangeEveryProperty(*line, events),
      ElementsAre("ZOrderIndex 3", "Stretchable 72", "ExtraPointCount 83 82", "UpdateExtraPoints"));
  line->SetUserData(1);
  EXPECT_THAT(events.Take(), ElementsAre("LinkChange l 30"));
  line->SetLink(nullptr);
  line->SetUserData(2);
  document_->RaiseLinkChange(nullptr, 30);
  EXPECT_THAT(events.Take(), IsEmpty());
}

TEST_F(LineTest, ACopyHasAFontOfItsOwn) {
  const Ref<vnLine> line = Loaded(u"F.St=T:");
  const Ref<vnLine> copy = Loaded(u"");
  Inside::CopyFrom(*copy, *line);
  copy->Font()->SetStrikethrough(false);
  EXPECT_TRUE(line->Font()->Strikethrough());
}

TEST_F(LineTest, PointsAreNumberedFromOneAndPointZeroIsNotSaved) {
  const Ref<vnLine> line = Loaded(u"");
  line->SetExtraPointX(0, 9);
  line->SetExtraPointX(2, 20);
  line->SetExtraPointY(1, 11);
  EXPECT_THAT(automation::ToUtf8(SavedText(*line)),
              EndsWith(":EPC=2:EPX_1=0:EPY_1=11:EPX_2=20:EPY_2=0:"));
}

TEST_F(LineTest, APointBeyondTheCountRaisesTheCount) {
  const Ref<vnLine> line = Loaded(u"");
  RecordingListener events(*document_);
  line->SetExtraPointX(3, 100);
  EXPECT_EQ(line->ExtraPointCount(), 3);
  EXPECT_EQ(line->ExtraPointX(3), 100);
  EXPECT_EQ(line->ExtraPointX(2), 0);
  EXPECT_EQ(line->ExtraPointY(3), 0);
  line->SetExtraPointY(1, 5);
  EXPECT_THAT(events.Take(), ElementsAre("LinkChange l 82", "LinkChange l 83"));
}

TEST_F(LineTest, PointsThatAreNotThereRaiseErrorNine) {
  const Ref<vnLine> line = Loaded(u"EPC=2:");
  EXPECT_EQ(ErrorOf([&] { line->ExtraPointX(-1); }), 9);
  EXPECT_EQ(ErrorOf([&] { line->ExtraPointY(3); }), 9);
  EXPECT_EQ(ErrorOf([&] { line->SetExtraPointX(-1, 1); }), 9);
  EXPECT_EQ(ErrorOf([&] { line->SetExtraPointY(2'000'000'000, 1); }), 9);
  EXPECT_EQ(line->ExtraPointCount(), 2);
  EXPECT_EQ(ErrorOf([&] { line->SetExtraPointY(1'000'000, 1); }), 0);
}

TEST_F(LineTest, CountIsBroughtIntoItsRangeAndKeepsWhatFits) {
  const Ref<vnLine> line = Loaded(u"EPC=80:EPX_1=1:EPX_80=80:");
  EXPECT_EQ(line->ExtraPointCount(), 80);
  EXPECT_EQ(line->ExtraPointX(80), 80);
  line->SetExtraPointCount(100);
  EXPECT_EQ(line->ExtraPointCount(), 75);
  EXPECT_EQ(line->ExtraPointX(1), 1);
  line->SetExtraPointCount(-5);
  EXPECT_EQ(line->ExtraPointCount(), 0);
  line->SetExtraPointCount(1);
  EXPECT_EQ(line->ExtraPointX(1), 0);
}

TEST_F(LineTest, UpdateExtraPointsKeepsTheirChangesQuiet) {
  const Ref<vnLine> line = Loaded(u"");
  RecordingListener events(*document_);
  line->SetUpdateExtraPoints(true);
  line->SetExtraPointX(1, 10);
  line->SetExtraPointY(1, 20);
  line->SetExtraPointCount(4);
  line->SetUpdateExtraPoints(false);
  EXPECT_THAT(events.Take(), IsEmpty());
  EXPECT_EQ(line->ExtraPointX(1), 10);
  EXPECT_EQ(line->ExtraPointY(1), 20);
  EXPECT_EQ(line->ExtraPointCount(), 4);
}

TEST_F(LineTest, ACountThatNoTextBacksIsHonouredUpToAMillion) {
  const Ref<vnLine> line = Loaded(u"EPC=2000000000:EPX_3=7:EPY_5000=8:");
  EXPECT_EQ(line->ExtraPointCount(), 1'000'000);
  EXPECT_EQ(line->ExtraPointX(3), 7);
  EXPECT_EQ(line->ExtraPointY(5000), 8);
  EXPECT_EQ(line->ExtraPointY(1'000'000), 0);
  // Its points are saved as far as they say something, or are few.
  const std::string saved = automation::ToUtf8(SavedText(*line));
  EXPECT_THAT(saved, EndsWith(":EPX_1000=0:EPY_1000=0:EPX_5000=0:EPY_5000=8:"));
  EXPECT_THAT(saved, HasSubstr(":EPC=1000000:EPX_1=0:EPY_1=0:EPX_2=0:EPY_2=0:EPX_3=7:"));
  EXPECT_EQ(Loaded(u"EPC=-3:EPX_1=1:")->ExtraPointCount(), 0);
}

TEST_F(LineTest, OnlyNumbersAsASaveWritesThemNamePoints) {
  const Ref<vnLine> line = Loaded(
      u"EPC=2:EPX_01=1:EPX_+1=2:EPX_ 1=3:EPX_1x=4:EPX_=5:EPX_0=6:EPX_3=7:EPX_99999999999=8:"
      u"EPX_-1=9:EPY_2=~64\"10\":EPY_2=11:EPY_1=~64\"x\":");
  EXPECT_EQ(line->ExtraPointCount(), 2);
  EXPECT_THAT(automation::ToUtf8(SavedText(*line)),
              EndsWith(":EPC=2:EPX_1=0:EPY_1=0:EPX_2=0:EPY_2=10:EPX_01=1:EPX_+1=2:EPX_ 1=3:"
                       "EPX_1x=4:EPX_=5:EPX_0=6:EPX_99999999999=8:EPX_-1=9:"));
  EXPECT_EQ(line->ExtraPointX(0), 0);
}

TEST_F(LineTest, TakesTheFontItIsGivenAndDoesNotListen) {
  const Ref<vnLine> line = Loaded(u"");
  RecordingListener events(*document_);
  line->Font()->SetSize({120000});
  EXPECT_THAT(events.Take(), IsEmpty());
  const Ref<automation::Font> font = automation::services().make_font();
  line->SetFont(font.get());
  EXPECT_THAT(events.Take(), ElementsAre("LinkChange l 34"));
  EXPECT_EQ(line->Font(), font);
  Inside::Read(*line, bag::KeptText(TextView(u"F.B=T:")));
  EXPECT_FALSE(font->Bold());
  EXPECT_TRUE(line->Font()->Bold());
}

TEST_F(LineTest, ALineThatWasNeverLoadedHasNoFontToSave) {
  const Ref<vnLine> line = Make<vnLine>();
  EXPECT_EQ(ErrorOf([&] { SavedText(*line); }), automation::kObjectNotSet);
  line->Font();
  EXPECT_EQ(ErrorOf([&] { SavedText(*line); }), 0);
}

}  // namespace
}  // namespace vndoc6
