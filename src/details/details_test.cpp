#include "vndoc6/details/details.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "bag/bag_reader.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/document/document.h"

namespace vndoc6 {
namespace {

using automation::Date;
using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;
using testing::Kept;
using testing::SavedText;
using Lines = std::vector<std::string>;

constexpr std::string_view kEveryKey =
    "K=~64\"key\":AB=~64\"R^amgr^ADN^aManager^A\":DA=t45000:DC=~64\"code\":DS=2:P=~64\"why\":"
    "R=s1.5:T=~64\"title\":S=~64\"where\":Desc=~64\"more\":DDT=3:Dur=~64\"2d\":AT=4:ATo=5:Tbl=6:"
    "Frm=~64\"form\":N=~64\"notes\":F=~64\"fields\":RP=~64\"read\":WP=~64\"write\":";

TEST(Details, AreWrittenAlikeOnceTheirPartsAreBuilt) {
  const auto details = Make<vnDetails>();
  Inside::Read(*details, Kept(kEveryKey));
  EXPECT_EQ(details->AuthorisedBy()->DisplayName(), u"Manager");
  EXPECT_EQ(automation::Get(*details->Fields(), u"Text"), Variant(u"fields"));
  EXPECT_EQ(SavedText(*details), kEveryKey);
}

TEST(Details, WithoutValuesWriteEveryKeyButThePasswords) {
  const auto details = Make<vnDetails>();
  const std::string text = SavedText(*details);
  const std::string key = automation::ToUtf8(bag::BagReader(Kept(text)).GetText("K"));
  EXPECT_EQ(key.size(), 38U);
  EXPECT_EQ(text, "K=~64\"" + key +
                      "\":AB=~64\"\":DA=t0:DC=~64\"\":DS=0:P=~64\"\":R=s0:T=~64\"\":S=~64\"\":"
                      "Desc=~64\"\":DDT=0:Dur=~64\"\":AT=0:ATo=0:Tbl=0:Frm=~64\"\":N=~64\"\":"
                      "F=~64\"\":");
  EXPECT_EQ(details->Key(), u"");
  Inside::Read(*details, Kept(text));
  EXPECT_EQ(automation::ToUtf8(details->Key()), key);
}

TEST(Details, LoadedWithoutAKeyLoseItsValue) {
  const auto details = Make<vnDetails>();
  Inside::Read(*details, Kept(kEveryKey));
  const Ref<vnTitleRef> authoriser = details->AuthorisedBy();
  EXPECT_EQ(details->AuthorisedBy(), authoriser);
  Inside::Read(*details, Kept("K=~64\"key\":DS=~64\"no number\":"));
  EXPECT_NE(details->AuthorisedBy(), authoriser);
  EXPECT_EQ(automation::Get(*details->Fields(), u"Text"), Variant(u""));
  // Only who the work is assigned to stays.
  EXPECT_EQ(details->AssignTo(), 5);
  details->SetAssignTo(0);
  const auto empty = Make<vnDetails>();
  Inside::Read(*empty, Kept("K=~64\"key\":"));
  empty->AuthorisedBy();
  EXPECT_EQ(SavedText(*details), SavedText(*empty));
}

TEST(Details, ReportNumbersOfTheirOwn) {
  const auto document = Make<vnDocument>();
  const Ref<vnDetails> details = document->Details();
  testing::RecordingListener events(*document);
  details->SetTitle(u"t");
  details->SetDocumentCode(u"c");
  details->SetDocumentStatus(1);
  details->SetRevision(2);
  details->SetScope(u"s");
  details->SetPurpose(u"p");
  details->SetDateApproved(Date{1});
  details->SetTitle(u"t");
  EXPECT_EQ(events.Take(), (Lines{"DetailsChange  1", "DetailsChange  2", "DetailsChange  3",
                                  "DetailsChange  4", "DetailsChange  5", "DetailsChange  6",
                                  "DetailsChange  7", "DetailsChange  1"}));
  details->SetDescription(u"d");
  details->SetDueDateType(1);
  details->SetDuration(u"d");
  details->SetAssignType(1);
  details->SetAssignTo(1);
  details->SetTable(1);
  details->SetForm(u"f");
  details->SetNotes(u"n");
  EXPECT_EQ(events.Take(), Lines{});
  Inside::Read(*details, Kept(kEveryKey));
  EXPECT_EQ(events.Take(), (Lines{"DetailsChange key 7", "DetailsChange key 2",
                                  "DetailsChange key 3", "DetailsChange key 4"}));
}

TEST(Details, KeepLongPasswords) {
  const Text password(100000, u'"');
  const auto details = Make<vnDetails>();
  Inside::StoreReadPassword(*details, password);
  Inside::StoreWritePassword(*details, password + u"^");
  const auto loaded = Make<vnDetails>();
  Inside::Read(*loaded, Kept(SavedText(*details)));
  EXPECT_EQ(Inside::read_password(*loaded), password);
  EXPECT_EQ(Inside::write_password(*loaded), password + u"^");
}

TEST(Details, GiveTheDocumentToTheAuthoriser) {
  const auto document = Make<vnDocument>();
  const Ref<vnTitleRef> authoriser = document->Details()->AuthorisedBy();
  EXPECT_EQ(authoriser->Document(), document);
  authoriser->SetDisplayName(u"Someone");
  EXPECT_NE(SavedText(*document->Details()).find("AB=~64\"R^a^ADN^aSomeone^A\""),
            std::string::npos);
}

}  // namespace
}  // namespace vndoc6
