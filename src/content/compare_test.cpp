#include "vndoc6/content/compare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "tests/support/recording_listener.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/chart/line.h"
#include "vndoc6/content/content.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/published/published.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using Lines = std::vector<std::string>;

// The differences as a host would print them, but for those of the document's identity.
Lines Differences(automation::Object& left, automation::Object& right) {
  Lines lines;
  for (const Difference& difference : Compare(left, right, {.ignore_identity = true})) {
    lines.push_back(automation::ToUtf8(DescribeDifference(difference)));
  }
  return lines;
}

Ref<vnStep> AddStep(vnDocument& document, const Text& key) {
  const auto step = Make<vnStep>();
  step->Load(u"", key);
  document.Steps()->Add(step.get());
  return step;
}

Ref<vnDocument> WithSteps(std::initializer_list<const char16_t*> keys) {
  const auto document = Make<vnDocument>();
  for (const char16_t* key : keys) AddStep(*document, key);
  return document;
}

TEST(Compare, TellsObjectPropertyAndValues) {
  const auto left = WithSteps({u"a", u"b"});
  const auto right = WithSteps({u"a", u"b"});
  EXPECT_EQ(Differences(*left, *right), Lines{});
  left->Steps()->Item(Variant(2))->Figure()->SetLeft(20);
  left->Details()->SetTitle(u"old");
  right->Details()->SetTitle(u"new");
  right->Chart()->Font()->SetBold(true);
  right->SetPagesCount(3);
  EXPECT_EQ(Differences(*left, *right),
            (Lines{"Chart/Font/Bold: False | True", "Steps/{b}/Figure/Left: 20 | 15",
                   "Details/Title: \"old\" | \"new\"", "PagesCount: 0 | 3"}));
  const Difference figure = Compare(*left->Steps(), *right->Steps()).at(0);
  EXPECT_EQ(figure.object, u"{b}/Figure");
  EXPECT_EQ(figure.class_name, "vnFigure");
  EXPECT_EQ(figure.property, u"Left");
  EXPECT_EQ(figure.left, Variant(20.0f));
  EXPECT_EQ(figure.right, Variant(15.0f));
}

TEST(Compare, TellsMembersThatAreMissingAddedOrMoved) {
  const auto left = WithSteps({u"a", u"b/{}\\", u"c", u"d"});
  const auto right = WithSteps({u"d", u"a", u"C"});
  // Keys that differ in letter case are two.
  EXPECT_EQ(Differences(*left, *right),
            (Lines{"Steps/{a}/StepIndex: 1 | 2", "- Steps/{b\\/\\{\\}\\\\}", "- Steps/{c}",
                   "Steps/{d}: position 4 | 1", "Steps/{d}/StepIndex: 4 | 1", "+ Steps/{C}"}));
}

TEST(Compare, ReadsRowsOfValuesAsLongAsTheyAre) {
  const auto left = Make<vnLink>();
  const auto right = Make<vnLink>();
  left->Line()->SetExtraPointX(1, 5);
  right->Line()->SetExtraPointX(1, 5);
  right->Line()->SetExtraPointY(1, 6);
  right->Line()->SetExtraPointX(2, 7);
  EXPECT_EQ(Differences(*left, *right),
            (Lines{"Line/ExtraPointX(2): Empty | 7", "Line/ExtraPointY(1): 0 | 6",
                   "Line/ExtraPointY(2): Empty | 0", "Line/ExtraPointCount: 1 | 2"}));
  EXPECT_EQ(Differences(*right->Line(), *Make<vnLink>()->Line()).size(), 5U);
}

TEST(Compare, ComparesBagsByEntriesPicturesByBytesAndObjectsByTheirKind) {
  const auto left = Make<Properties>();
  const auto right = Make<Properties>();
  const auto add = [](const Ref<Properties>& bag, const char16_t* key, Variant value) {
    bag->Add(key, value);
  };
  add(left, u"same", Variant(std::nan("")));
  add(right, u"same", Variant(std::nan("")));
  add(left, u"kind", Variant(int32_t{1}));
  add(right, u"kind", Variant(1.0));
  add(left, u"picture", Variant(automation::MakePlainPicture({1, 2})));
  add(right, u"picture", Variant(automation::MakePlainPicture({1, 2})));
  EXPECT_EQ(Differences(*left, *right), Lines{"{kind}/Value: 1 | 1"});
  left->Remove(u"kind");
  right->Remove(u"kind");
  add(right, u"picture", Variant(automation::MakePlainPicture({1, 3})));
  EXPECT_EQ(Differences(*left, *right).front(),
            "{picture}/Value: picture of 2 bytes | picture of 2 bytes");
  add(left, u"picture", Variant(Ref<automation::Object>()));
  EXPECT_EQ(Differences(*left, *right).front(), "{picture}/Value: Nothing | picture of 2 bytes");
  // A bag may hold itself: what an entry's object holds is nobody's content.
  add(left, u"picture", Variant(left));
  add(right, u"picture", Variant(right));
  EXPECT_EQ(Differences(*left, *right), Lines{});
  left->RemoveAll();
  EXPECT_EQ(Differences(*left, *right), (Lines{"+ {same}", "+ {picture}"}));
  right->RemoveAll();
}

TEST(Compare, OfDifferentClassesTellsThem) {
  EXPECT_EQ(Differences(*Make<vnTask>(), *Make<vnLink>()), Lines{": \"vnTask\" | \"vnLink\""});
}

TEST(Compare, ReportsNothingAndChangesNothing) {
  const auto document = WithSteps({u"a"});
  const auto container = Make<vnContainer>();
  document->ContainerCollection()->Add(container.get());
  testing::RecordingListener events(*document);
  EXPECT_EQ(Differences(*document, *document), Lines{});
  EXPECT_EQ(Differences(*container, *container), Lines{});
  EXPECT_EQ(events.Take(), Lines{});
  EXPECT_TRUE(document->ChangeEvents());
  document->SetChangeEvents(false);
  Compare(*document, *document);
  EXPECT_FALSE(document->ChangeEvents());
}

TEST(Compare, TellsTheDocumentsIdentityWhenAsked) {
  const auto left = Make<vnDocument>();
  const auto right = Make<vnDocument>();
  left->Details()->NewRevision(u"");
  const std::vector<Difference> differences = Compare(*left, *right);
  EXPECT_TRUE(std::any_of(differences.begin(), differences.end(), [](const Difference& difference) {
    return difference.property == u"IR" && difference.object.empty();
  }));
}

// The classes that can be met below a class, by the published types.
std::vector<const automation::ClassInfo*> ClassesBelow(const automation::ClassInfo& info) {
  std::vector<const automation::ClassInfo*> below;
  for (const ContentMember& content : ContentOf(info)) {
    if (content.part != nullptr) below.push_back(content.part);
  }
  if (const automation::ClassInfo* member = MemberClassOf(info)) below.push_back(member);
  return below;
}

void ExpectNoWayBack(const automation::ClassInfo& info,
                     std::vector<const automation::ClassInfo*> above) {
  ASSERT_EQ(std::find(above.begin(), above.end(), &info), above.end())
      << info.name() << " lies below itself: leave out the member that leads back";
  above.push_back(&info);
  for (const automation::ClassInfo* below : ClassesBelow(info)) ExpectNoWayBack(*below, above);
}

TEST(Content, IsATreeOfClasses) {
  for (const PublishedClass& published : PublishedClasses()) ExpectNoWayBack(published.info(), {});
}

void Collect(const automation::ClassInfo& info, std::set<std::string_view>& names) {
  if (!names.insert(info.name()).second) return;
  for (const automation::ClassInfo* below : ClassesBelow(info)) Collect(*below, names);
}

TEST(Content, OfADocumentReachesEveryClassBelowIt) {
  std::set<std::string_view> names;
  Collect(vnDocument::classInfo(), names);
  // Pick-lists and templates lie in files of their own, titles in the handler's; field objects are
  // known by their text alone.
  const std::set<std::string_view> elsewhere = {
      "vnItems",  "vnItem",  "vnTemplateLibrary", "vnTemplates", "vnTemplate",
      "vnTitles", "vnTitle", "FieldDefs",         "FieldValues", "FormDef"};
  for (const PublishedClass& published : PublishedClasses()) {
    const std::string_view name = published.info().name();
    EXPECT_NE(names.count(name), elsewhere.count(name)) << name;
  }
}

}  // namespace
}  // namespace vndoc6
