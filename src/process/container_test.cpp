#include "vndoc6/process/container.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using testing::Kept;
using testing::SavedText;
using Lines = std::vector<std::string>;

Ref<vnContainer> Keyed(const Text& key) {
  const auto container = Make<vnContainer>();
  container->SetKey(key);
  return container;
}

TEST(Container, SavesWhatItLoadedAndAFigureNobodyReadUnchanged) {
  constexpr std::string_view kSaved =
      R"(K=~64"k":L=~64"label":D=~64"description":F=~64"no ^j figure":)";
  const auto container = Make<vnContainer>();
  Inside::Read(*container, Kept(kSaved), Text());
  EXPECT_EQ(SavedText(*container), kSaved);
  const Ref<vnFigure> figure = container->Figure();
  EXPECT_EQ(container->Figure(), figure);
  EXPECT_EQ(figure->Container(), container);
  container->Load(u"K=~64\"stored\":", u"given");
  EXPECT_EQ(SavedText(*container), R"(K=~64"given":L=~64"":D=~64"":F=~64"":)");
  EXPECT_NE(container->Figure(), figure);
}

TEST(Container, ReportsEveryPutOfItsLabelAndEveryReadingOfItsDescription) {
  const auto document = Make<vnDocument>();
  testing::RecordingListener listener(*document);
  const auto container = Keyed(u"k");
  container->SetDocument(document.get());
  container->SetKey(u"c");
  container->SetDescription(u"d");
  container->Save();
  EXPECT_EQ(listener.Take(), Lines{});
  container->SetLabel(u"l");
  container->SetLabel(u"l");
  EXPECT_EQ(listener.Take(), (Lines{"ContainerChange c 1", "ContainerChange c 1"}));
  EXPECT_EQ(container->Description(), u"d");
  EXPECT_EQ(container->Description(), u"d");
  EXPECT_EQ(listener.Take(), (Lines{"ContainerChange c 1", "ContainerChange c 1"}));
  container->SetDocument(nullptr);
  EXPECT_EQ(container->Description(), u"d");
  EXPECT_EQ(container->Document(), Variant(Ref<automation::Object>()));
}

TEST(Container, ACopyHasAFigureOfItsOwnAndNoKey) {
  const auto source = Keyed(u"k");
  const auto copy = Make<vnContainer>();
  Inside::CopyFrom(*copy, *source);
  EXPECT_EQ(copy->Key(), u"");
  EXPECT_NE(copy->Figure(), source->Figure());
}

TEST(Containers, AreKeptUnderTheKeyTheyCameWithAndLeaveStepsAlone) {
  const auto document = Make<vnDocument>();
  vnContainers& containers = *document->ContainerCollection();
  const Ref<vnStep> step = document->NewStep();
  step->SetContainerKey(u"k");
  testing::RecordingListener listener(*document);
  const auto container = Keyed(u"k");
  containers.Add(container.get());
  container->SetKey(u"other");
  containers.Remove(Variant(u"other"));
  EXPECT_EQ(containers.Item(Variant(u"k")), container);
  containers.Remove(Variant(u"k"));
  EXPECT_EQ(containers.Count(), 0);
  EXPECT_EQ(step->ContainerKey(), u"k");
  EXPECT_EQ(listener.Take(), (Lines{"ContainerAdded k", "ContainerRemoved other"}));
}

}  // namespace
}  // namespace vndoc6
