#include "vndoc6/templates/template_library.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <limits>

#include "platform/file_system.h"
#include "tests/support/recording_listener.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;
using Lines = std::vector<std::string>;

class TemplateLibrary : public ::testing::Test {
 protected:
  Text Name(const char* file) const { return folder_.Name(file); }

  // A library with two figure templates and a jump template, in a file.
  void SaveSample(const char* name) const {
    const auto library = Make<vnTemplateLibrary>();
    library->FigureTemplates()->NewItem(u"First")->SetValue(u"{\\rtf1 \"quoted\"}");
    const Ref<vnTemplate> second = library->FigureTemplates()->NewItem(u"Second");
    second->SetDescription(u"the second");
    second->SetTagVariant(Variant(int16_t{5}));
    const Ref<vnTemplate> jump = library->JumpTemplates()->NewItem();
    jump->SetTagVariant(Variant(second));
    EXPECT_EQ(jump->TagVariant(), Variant(second));
    library->SaveAs(Name(name));
  }
  static int32_t ErrorOf(const std::function<void()>& call, const Text& source) {
    try {
      call();
    } catch (const automation::Error& error) {
      EXPECT_EQ(error.source(), source);
      return error.number();
    }
    return 0;
  }

  testing::TemporaryFolder folder_;
};

TEST_F(TemplateLibrary, NumbersTemplatesPerList) {
  const auto library = Make<vnTemplateLibrary>();
  const Ref<vnTemplates> figures = library->FigureTemplates();
  const Ref<vnTemplate> first = figures->NewItem();
  const Ref<vnTemplate> second = figures->NewItem(u"Second");
  EXPECT_EQ(first->DisplayName(), u"New Item");
  EXPECT_EQ(first->Key(), u"fig0");
  EXPECT_EQ(second->Key(), u"fig1");
  EXPECT_EQ(second->TemplateLibrary(), library);
  EXPECT_EQ(second->Templates(), figures);
  for (const Variant& name : {Variant(2), Variant(u"1"), Variant(u"FIG1")}) {
    EXPECT_EQ(figures->Item(name), second);
  }
  for (const Variant& name : {Variant(3), Variant(u"fig"), Variant(u"fig01"), Variant(u"jmp1")}) {
    EXPECT_EQ(figures->Item(name), nullptr);
  }
  // A number given at or above the counter is the next one handed out, and taken then.
  const auto numbered = Make<vnTemplate>();
  numbered->SetID(10);
  EXPECT_EQ(numbered->Key(), u"10");
  figures->Add(numbered.get());
  figures->Add(nullptr);
  EXPECT_EQ(figures->NewItem()->Templates(), nullptr);
  EXPECT_EQ(figures->Count(), 3);
  numbered->SetID(std::numeric_limits<int32_t>::max());
  const Ref<vnTemplates> files = library->FileTemplates();
  files->Add(numbered.get());
  EXPECT_EQ(files->NewItem()->Templates(), nullptr);
  EXPECT_EQ(files->Count(), 1);
}

TEST_F(TemplateLibrary, ReportsChangesByList) {
  const auto library = Make<vnTemplateLibrary>();
  testing::RecordingListener events(*library);
  const struct {
    Ref<vnTemplates> list;
    std::string event;
    std::string key;
  } kLists[] = {{library->ReportTemplates(), "ReportTemplateChange ", "rpt0 "},
                {library->FigureTemplates(), "FigureTemplateChange ", "fig0 "},
                {library->RevisionTemplates(), "RevisionTemplateChange ", "rev0 "},
                {library->FileTemplates(), "FileTemplateChange ", "fil0 "},
                {library->JumpTemplates(), "JumpTemplateChange ", "jmp0 "}};
  for (const auto& each : kLists) {
    const Ref<vnTemplate> added = each.list->NewItem(u"name");
    added->SetDisplayName(u"a");
    added->SetDescription(u"b");
    added->SetValue(u"c");
    added->SetTagVariant(Variant(1));
    added->SetID(0);
    each.list->Remove(Variant(each.list->ListName() + u"0"));
    each.list->Remove(Variant(1));
    const std::string line = each.event + each.key;
    EXPECT_EQ(events.Take(),
              (Lines{line + "1 0", line + "0 1", line + "0 2", line + "0 3", line + "2 0"}));
  }
  Make<vnTemplates>()->NewItem();
  Make<vnTemplate>()->SetValue(u"alone");
  EXPECT_EQ(events.Take(), Lines{});
}

TEST_F(TemplateLibrary, SavesAndLoads) {
  SaveSample("a.vnt");
  const auto bag = Make<Properties>();
  ASSERT_TRUE(bag->ReadFromFile(Name("a.vnt"), Text()));
  EXPECT_EQ(bag->GetText(),
            u"ReportTemplates=~64\"\":FigureTemplates=~64\""
            u"L1^aID=0:DisplayName^bFirst^BDescription^b^BValue^b{\\rtf1 ^lquoted^l}^B^A"
            u"L2^aID=1:DisplayName^bSecond^BDescription^bthe second^BValue^b^BTagVariant=i5:^A"
            u"NextID=2:\":RevisionTemplates=~64\"\":FileTemplates=~64\"\":JumpTemplates=~64\""
            u"L1^aID=0:DisplayName^bNew Item^BDescription^b^BValue^b^B^ANextID=1:\":");

  const auto library = Make<vnTemplateLibrary>();
  testing::RecordingListener events(*library);
  EXPECT_TRUE(library->Load(Name("a.vnt")));
  EXPECT_EQ(events.Take(), (Lines{"Loading 10", "Loading 40", "Loading 70", "Loading 80",
                                  "Loading 90", "Loading 100", "LoadComplete"}));
  EXPECT_EQ(library->FileName(), Name("a.vnt"));
  // Number 0 means "not numbered": a template that had it is numbered anew.
  const Ref<vnTemplates> figures = library->FigureTemplates();
  ASSERT_EQ(figures->Count(), 2);
  EXPECT_EQ(figures->Item(Variant(1))->Key(), u"fig2");
  EXPECT_EQ(figures->Item(Variant(1))->Value(), u"{\\rtf1 \"quoted\"}");
  EXPECT_EQ(figures->Item(Variant(u"fig1"))->TagVariant(), Variant(int16_t{5}));
  EXPECT_TRUE(library->JumpTemplates()->Item(Variant(1))->TagVariant().IsEmpty());
  EXPECT_EQ(library->GetTemplateByKey(u"1"), figures->Item(Variant(u"1")));
  EXPECT_EQ(library->GetTemplateByKey(u"jmp1")->TemplateLibrary(), library);
  EXPECT_EQ(library->GetTemplateByKey(u"rpt1"), nullptr);

  figures->NewItem();
  events.Take();
  EXPECT_FALSE(library->Save());
  EXPECT_EQ(events.Take(), (Lines{"Saving 30", "Saving 60", "Saving 70", "Saving 80", "Saving 90",
                                  "Saving 100", "SaveComplete"}));
  const auto again = Make<vnTemplateLibrary>();
  again->SetChangeEventsLoading(true);
  testing::RecordingListener heard(*again);
  EXPECT_TRUE(again->Load(Name("a.vnt")));
  EXPECT_EQ(heard.Take(), (Lines{"Loading 10", "Loading 40", "FigureTemplateChange fig2 1 0",
                                 "FigureTemplateChange fig1 1 0", "FigureTemplateChange fig3 1 0",
                                 "Loading 70", "Loading 80", "Loading 90",
                                 "JumpTemplateChange jmp1 1 0", "Loading 100", "LoadComplete"}));
}

TEST_F(TemplateLibrary, TellsWhyItDidNotLoadOrSave) {
  SaveSample("a.vnt");
  const auto library = Make<vnTemplateLibrary>();
  testing::RecordingListener events(*library);
  EXPECT_FALSE(library->Load(Text()));
  EXPECT_FALSE(library->Load(Name("missing.vnt")));
  EXPECT_FALSE(library->Save());
  EXPECT_FALSE(library->SaveAs(Text()));
  EXPECT_EQ(events.Take(), (Lines{"LoadFailed 1", "LoadFailed 3", "SaveFailed 1", "SaveFailed 1"}));
  EXPECT_TRUE(library->Load(Name("a.vnt")));
  events.Take();
  EXPECT_FALSE(library->Load(Text()));
  EXPECT_EQ(events.Take(), Lines{"LoadFailed 2"});
}

TEST_F(TemplateLibrary, RaisesAnErrorWhenTheFileCannotBeWritten) {
  SaveSample("a.vnt");
  const auto library = Make<vnTemplateLibrary>();
  library->Load(Name("a.vnt"));
  testing::RecordingListener events(*library);
  const auto save = [&] { library->SaveAs(Name("no such folder/a.vnt")); };
  EXPECT_EQ(ErrorOf(save, u"vnTemplateLibrary.SaveAs"), 75);
  EXPECT_EQ(events.Take(),
            (Lines{"Saving 30", "Saving 60", "Saving 70", "Saving 80", "Saving 90"}));
  EXPECT_EQ(library->FileName(), Name("a.vnt"));
  std::filesystem::remove_all(folder_.path());
  EXPECT_EQ(ErrorOf([&] { library->Save(); }, u"vnTemplateLibrary.Save"), 75);
}

TEST_F(TemplateLibrary, LoadsNothingOfAFileThatWasCutShort) {
  SaveSample("a.vnt");
  std::string bytes = *platform::ReadWholeFile(Name("a.vnt"));
  const auto library = Make<vnTemplateLibrary>();
  testing::RecordingListener events(*library);
  for (size_t size = bytes.size() - 1; size > 2; --size) {
    folder_.Write("cut.vnt", bytes.substr(0, size));
    const bool between_entries = bytes.compare(size - 2, 2, "\":") == 0;
    if (between_entries) continue;
    ASSERT_EQ(ErrorOf([&] { library->Load(Name("cut.vnt")); }, u"vnTemplateLibrary.Load"), 75);
  }
  EXPECT_EQ(events.Take(), Lines{});
  EXPECT_EQ(library->FigureTemplates()->Count(), 0);
  // Mended, it loads into the same library.
  EXPECT_TRUE(library->Load(Name("a.vnt")));
  EXPECT_EQ(library->FigureTemplates()->Count(), 2);
}

TEST_F(TemplateLibrary, SkipsTheMarkThatAnEditorPutsBeforeAFile) {
  const auto source = Make<vnTemplateLibrary>();
  source->ReportTemplates()->NewItem(u"in the first list");
  source->SaveAs(Name("a.vnt"));
  folder_.Write("marked.vnt", "\xEF\xBB\xBF" + *platform::ReadWholeFile(Name("a.vnt")));
  const auto library = Make<vnTemplateLibrary>();
  EXPECT_TRUE(library->Load(Name("marked.vnt")));
  EXPECT_EQ(library->ReportTemplates()->Count(), 1);
  library->Save();
  EXPECT_EQ(platform::ReadWholeFile(Name("marked.vnt"))->front(), 'R');
}

// A listener that lets go of the library in the middle of an event.
TEST_F(TemplateLibrary, OutlivesItsOwnEvents) {
  struct LetGo : TemplateLibraryListener {
    void Loading(int16_t) override { library = nullptr; }
    void FigureTemplateChange(vnTemplate&, EnumVantrelChangeEvent, int32_t) override {
      library = nullptr;
    }
    Ref<vnTemplateLibrary> library = Make<vnTemplateLibrary>();
  };
  SaveSample("a.vnt");
  LetGo listener;
  listener.library->AddListener(&listener);
  EXPECT_TRUE(listener.library.get()->Load(Name("a.vnt")));
  LetGo another;
  another.library->AddListener(&another);
  const Ref<vnTemplate> changed = another.library->FigureTemplates()->NewItem();
  EXPECT_EQ(changed->Key(), u"fig0");
}

}  // namespace
}  // namespace vndoc6
