// What a saved text holds beside what this version knows comes back, from every level.
#include "vndoc6/content/unknown_entries.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "automation/inside.h"
#include "bag/bag_scanner.h"
#include "platform/file_system.h"
#include "platform/keys.h"
#include "tests/endurance/soak.h"
#include "tests/support/random_document.h"
#include "tests/support/saved_text.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/content/compare.h"
#include "vndoc6/content/content.h"
#include "vndoc6/content/walk.h"
#include "vndoc6/details/item.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"
#include "vndoc6/templates/template_library.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {
namespace {

using automation::CallKind;
using automation::Make;
using automation::MemberInfo;
using automation::Object;
using automation::Ref;
using automation::TypeKind;
using automation::Variant;
using testing::Below;
using testing::RandomContent;
using Lines = std::vector<std::string>;

constexpr int32_t kDocuments = 6;

// The objects below a root, and it, in the order of a walk.
std::vector<Ref<Object>> ObjectsOf(Object& root) {
  struct Collector : ContentVisitor {
    void OnObjectBegin(TextView, Object& object) override { objects.emplace_back(&object); }
    std::vector<Ref<Object>> objects;
  } collector;
  Walk(root, collector);
  return std::move(collector.objects);
}

// Each object that carries something, with that.
Lines CarriedBelow(Object& root) {
  Lines lines;
  for (const Ref<Object>& object : ObjectsOf(root)) {
    const std::string carried = UnknownTextOf(*object);
    if (!carried.empty()) lines.push_back(std::string(object->TypeName()) + ' ' + carried);
  }
  return lines;
}

// An entry of any type under a hostile key. A text in a collection's own that has a key is a
// member.
std::string RandomEntry(RandomContent& content, bool in_collection) {
  Variant value = Below(content.random(), 8) == 0 ? Variant(content.Picture())
                                                  : content.Value({TypeKind::kVariant});
  if (const Text* text = in_collection ? value.If<Text>() : nullptr) {
    Text plain = *text;
    std::erase(plain, u'=');
    value = Variant(plain);
  }
  std::string bytes;
  bag::BagWriter(bytes).AddVariant(u"?" + content.Key(), value);
  return bytes;
}

void PutRandomEntries(RandomContent& content, Object& root, std::set<std::string_view>& classes) {
  for (const Ref<Object>& object : ObjectsOf(root)) {
    std::string text;
    for (size_t left = 1 + Below(content.random(), 3); left > 0; --left) {
      text += RandomEntry(content, ContentReader::IsCollection(*object));
    }
    if (PutUnknownText(*object, text)) classes.insert(object->TypeName());
  }
}

void ChangeOneProperty(Object& object) {
  constexpr std::string_view kWhatOthersGoBy[] = {"Key", "ID", "Ref", "StepIndex", "IR", "GUID"};
  for (const MemberInfo& member : object.GetClassInfo()->members()) {
    if (member.kind != CallKind::kPut || member.parameters.size() != 1) continue;
    if (member.not_content != nullptr ||
        std::count(std::begin(kWhatOthersGoBy), std::end(kWhatOthersGoBy), member.name) != 0) {
      continue;
    }
    const Text name = automation::FromUtf8(member.name);
    const Variant before = automation::Get(object, name);
    switch (member.parameters[0].type.kind) {
      case TypeKind::kText:
        return automation::Put(object, name, {Variant(before.ToText() + u"x")});
      case TypeKind::kLong:
        return automation::Put(object, name, {Variant(before.ToLong() / 2 + 7)});
      case TypeKind::kBoolean:
        return automation::Put(object, name, {Variant(!before.ToBoolean())});
      default:
        break;
    }
  }
}

// Saves and loads; reads and changes; saves and loads.
template <class T>
void ExpectNothingLost(T& root, const Text& name) {
  const Lines carried = CarriedBelow(root);
  root.SaveAs(name);
  const auto load = [&] {
    auto loaded = Make<T>();
    if constexpr (std::is_same_v<T, vnDocument>) {
      EXPECT_TRUE(loaded->Load(name, u""));
    } else {
      EXPECT_TRUE(loaded->Load(name));
    }
    return loaded;
  };
  const Ref<T> loaded = load();
  ASSERT_EQ(CarriedBelow(*loaded), carried);
  for (const Ref<Object>& object : ObjectsOf(*loaded)) ChangeOneProperty(*object);
  loaded->Save();
  ASSERT_EQ(CarriedBelow(*load()), carried);
}

TEST(UnknownEntries, ComeBackFromEveryLevel) {
  const testing::TemporaryFolder folder;
  std::set<std::string_view> classes;
  for (int32_t i = 0; i < testing::Times(kDocuments); ++i) {
    SCOPED_TRACE(i);
    RandomContent content(testing::Seed() + static_cast<uint32_t>(i));
    const Ref<vnDocument> document = RandomDocument(content);
    PutRandomEntries(content, *document, classes);
    ExpectNothingLost(*document, folder.Name("a.vn6"));
    const auto library = Make<vnTemplateLibrary>();
    content.Fill(*library);
    PutRandomEntries(content, *library, classes);
    ExpectNothingLost(*library, folder.Name("a.vnl"));
  }
  EXPECT_EQ(classes, (std::set<std::string_view>{"vnChart",
                                                 "vnCondition",
                                                 "vnConditions",
                                                 "vnContainer",
                                                 "vnContainers",
                                                 "vnDetails",
                                                 "vnDocument",
                                                 "vnFigure",
                                                 "vnFile",
                                                 "vnFiles",
                                                 "vnJump",
                                                 "vnJumps",
                                                 "vnLine",
                                                 "vnLink",
                                                 "vnLinks",
                                                 "vnRevision",
                                                 "vnRevisions",
                                                 "vnStep",
                                                 "vnSteps",
                                                 "vnTask",
                                                 "vnTasks",
                                                 "vnTemplate",
                                                 "vnTemplateLibrary",
                                                 "vnTemplates",
                                                 "vnTitleRef",
                                                 "vnTitleRefs"}));
}

// The file's entries as they lie there, but for the counter that every save moves on and the keys
// that it gives figures.
std::string AllThatStays(const Text& name) {
  bag::BagScanner scanner{bag::KeptText(bag::SharedBytes(platform::ReadWholeFile(name).value()))};
  bag::BagEntry entry;
  std::string all;
  while (scanner.Next(entry)) {
    if (entry.key != "IR") all += scanner.WholeOf(entry).raw();
  }
  EXPECT_FALSE(scanner.faulty());
  const size_t size = platform::NewKey().size();
  for (size_t at = 0; (at = all.find('{', at)) != all.npos; ++at) {
    if (all.substr(at, size).ends_with('}')) all.erase(at, size);
  }
  return all;
}

TEST(UnknownEntries, StandInTheSameBytesWhateverWasRead) {
  const testing::TemporaryFolder folder;
  const Text name = folder.Name("a.vn6");
  const auto load = [&] {
    auto document = Make<vnDocument>();
    EXPECT_TRUE(document->Load(name, u""));
    return document;
  };
  for (int32_t i = 0; i < testing::Times(kDocuments); ++i) {
    SCOPED_TRACE(i);
    RandomContent content(testing::Seed() + static_cast<uint32_t>(i));
    const Ref<vnDocument> made = RandomDocument(content);
    std::set<std::string_view> classes;
    PutRandomEntries(content, *made, classes);
    ASSERT_TRUE(made->SaveAs(name));
    // The few values that a load changes are changed now.
    const Ref<vnDocument> settled = load();
    ObjectsOf(*settled);
    ASSERT_TRUE(settled->Save());

    const std::string bytes = AllThatStays(name);
    ASSERT_TRUE(load()->Save());
    ASSERT_EQ(AllThatStays(name), bytes);
    const Ref<vnDocument> some = load();
    for (int32_t step = 1; step <= some->Steps()->Count(); step += 2) {
      ObjectsOf(*some->Steps()->Item(Variant(step)));
    }
    ObjectsOf(*some->Links());
    ASSERT_TRUE(some->Save());
    ASSERT_EQ(AllThatStays(name), bytes);
    const Ref<vnDocument> all = load();
    ObjectsOf(*all);
    ASSERT_TRUE(all->Save());
    ASSERT_EQ(AllThatStays(name), bytes);
  }
}

template <class T>
std::string Reloaded(T& object, std::string_view text) {
  if constexpr (requires { Inside::Read(object, testing::Kept(text)); }) {
    Inside::Read(object, testing::Kept(text));
  } else {
    Inside::Read(object, testing::Kept(text), Text());
  }
  return testing::SavedText(object);
}

TEST(UnknownEntries, StandBehindTheKnownOnesEachKeyOnce) {
  const std::string known = "K=~64\"k\":N=~64\"n\":D=~64\"\":TT=1:MT=0:TO=2:TD=~64\"\":";
  const auto task = Make<vnTask>();
  EXPECT_EQ(Reloaded(*task,
                     "Z=~64\"^Jz^ay\":TO=2:A=d1.50:N=~64\"n\":N=~64\"m\":K=~64\"k\":A=T:TT=1:"
                     "B=i5:C=pQk0=:E=dwhat:F=e:"),
            known + "Z=~64\"^Jz^ay\":A=d1.50:B=i5:C=pQk0=:E=dwhat:F=e:");
  EXPECT_EQ(Reloaded(*task, known), known);  // another text, other entries

  // More than are looked up one by one.
  std::string many;
  for (int i = 100; i-- > 0;) many += "Z" + std::to_string(i) + "=5:";
  EXPECT_EQ(Reloaded(*task, many + known + many), known + many);
}

TEST(UnknownEntries, OfACollectionAreWhatIsNoMember) {
  const std::string other = "Size=5:Tx=T:Note=~64\"text\":Size=6:";
  const auto tasks = Make<vnTasks>();
  const std::string saved = Reloaded(*tasks, "Ta=~64\"K^aa^A\":" + other + "own=~64\"K^ab^A\":");
  EXPECT_EQ(tasks->Count(), 2);
  EXPECT_TRUE(saved.starts_with("Ta=~64\"")) << saved;
  EXPECT_TRUE(saved.ends_with("\":" + other)) << saved;

  const std::string items = "L1=~64\"ID=4:DisplayName^a^ADescription^a^A\":NextID=7:";
  EXPECT_EQ(Reloaded(*Make<vnItems>(), "Later=5:" + items + "Lx=~64\"\":"),
            items + "Later=5:Lx=~64\"\":");
  EXPECT_EQ(Reloaded(*Make<vnItems>(), "Later=5:"), "Later=5:");
}

TEST(UnknownEntries, GoWithTextsNotWithCopies) {
  const auto document = Make<vnDocument>();
  const Text text = u"PB=~64\"TR1^aR^bm^BDN^bm^BZ=4:^AZ=3:\":K=~64\"k\":Fig=~64\"Z=2:\":Z=1:";
  const auto step = Make<vnStep>();
  step->Load(text);
  document->Steps()->Add(step.get());
  const Lines all = {"vnStep Z=1:", "vnFigure Z=2:", "vnTitleRefs Z=3:", "vnTitleRef Z=4:"};
  EXPECT_EQ(CarriedBelow(*step), all);
  EXPECT_EQ(CarriedBelow(*document->NewStep(u"k")), all);
  EXPECT_EQ(CarriedBelow(*document->CopyStep(step.get())), Lines{});
  const auto container = Make<vnContainer>();
  container->Load(u"F=~64\"Z=2:\":Z=1:");
  EXPECT_EQ(CarriedBelow(*document->CopyContainer(container.get())), Lines{});
}

TEST(UnknownEntries, AreListedPutAndCompared) {
  const auto left = Make<vnLink>();
  const auto right = Make<vnLink>();
  left->Load(u"a^-b=i5:Line=x:L=~64\"Y=c9.5:\":Z=~64\"z\":");
  EXPECT_TRUE(PutUnknownText(*right, "Z=~64\"z\":a^-b=5:"));
  const std::vector<UnknownEntry> entries = UnknownEntriesOf(*left);
  ASSERT_EQ(entries.size(), 3U);
  EXPECT_EQ(entries[0].key, u"a=b");
  EXPECT_EQ(entries[0].value, Variant(int16_t{5}));
  EXPECT_TRUE(entries[1].value.IsEmpty());
  EXPECT_EQ(entries[2].text, "Z=~64\"z\":");
  Lines lines;
  for (const Difference& difference : Compare(*left, *right)) {
    lines.push_back(automation::ToUtf8(DescribeDifference(difference)));
  }
  EXPECT_EQ(lines, (Lines{"Line/[Y]: \"Y=c9.5:\" | Empty", "[a=b]: \"a^-b=i5:\" | \"a^-b=5:\"",
                          "[Line]: \"Line=x:\" | Empty"}));
  EXPECT_FALSE(PutUnknownText(*right, "Z=~64\"z:"));
  EXPECT_EQ(UnknownTextOf(*right), "Z=~64\"z\":a^-b=5:");
  EXPECT_FALSE(PutUnknownText(*Make<Properties>(), "Z=5:"));
  EXPECT_EQ(UnknownTextOf(*Make<Properties>()), "");
}

}  // namespace
}  // namespace vndoc6
