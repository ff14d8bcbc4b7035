// The document file: saving, loading, what each reports, and what goes wrong.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "core/scope.h"
#include "document/temp_save.h"
#include "platform/file_system.h"
#include "platform/keys.h"
#include "tests/support/recording_listener.h"
#include "tests/support/scripted_object.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/automation/services.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/chart.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/details/details.h"
#include "vndoc6/details/revision.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using Lines = std::vector<std::string>;

class DocumentFile : public ::testing::Test {
 protected:
  Text Name(const char* name) const { return own_folder_.Name(name); }
  void Write(const char* name, std::string_view bytes) const { own_folder_.Write(name, bytes); }
  std::string Read(const char* name) const {
    return platform::ReadWholeFile(Name(name)).value_or("(no such file)");
  }
  static const Lines& SavingEvents() {
    static const Lines lines = {"Saving 5",  "Saving 10", "Saving 20", "Saving 30",
                                "Saving 40", "Saving 50", "Saving 60", "Saving 70",
                                "Saving 80", "Saving 90", "Saving 100"};
    return lines;
  }

  const testing::TemporaryFolder own_folder_;
  const std::filesystem::path& folder_ = own_folder_.path();
};

Lines operator+(Lines left, const Lines& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

const Lines kLoadingEvents = {"Loading 10", "Loading 20", "Loading 40",
                              "Loading 60", "Loading 90", "Loading 100"};

TEST_F(DocumentFile, EverySaveMovesTheCounterOnce) {
  const auto saved_ir = [&](const char* name) {
    const auto loaded = Make<vnDocument>();
    EXPECT_TRUE(loaded->Load(Name(name), Text()));
    return loaded->IR();
  };
  const auto unread = Make<vnDocument>();
  unread->SaveAs(Name("a.vn6"));
  EXPECT_EQ(saved_ir("a.vn6"), 1);
  unread->Save();
  EXPECT_EQ(saved_ir("a.vn6"), 2);
  const auto read = Make<vnDocument>();
  EXPECT_EQ(read->IR(), 1);
  read->SaveAs(Name("b.vn6"));
  EXPECT_EQ(saved_ir("b.vn6"), 1);
  read->Save();
  EXPECT_EQ(saved_ir("b.vn6"), 2);

  // A host's object that moves it while its text is taken moves it for this save.
  const auto moved = Make<vnDocument>();
  const testing::RegisteredFactory factory(u"Fields.FieldValues", [&] {
    const auto text = [&](std::span<const Variant> put) {
      if (put.empty()) ScopeOf(*moved).IncrementIR();
      return Variant(u"");
    };
    return Ref<automation::Object>(testing::MakeScriptedObject("FieldValues", {{u"Text", text}}));
  });
  moved->Details()->Fields();
  moved->SaveAs(Name("c.vn6"));
  EXPECT_EQ(saved_ir("c.vn6"), 1);
  moved->Save();
  EXPECT_EQ(saved_ir("c.vn6"), 2);
}

TEST_F(DocumentFile, ACopyUnderAnotherNameIsAnotherDocument) {
  const auto document = Make<vnDocument>();
  ASSERT_TRUE(document->SaveAs(Name("a.vn6")));
  const Text guid = document->GUID();
  EXPECT_FALSE(guid.empty());
  document->SaveAs(Name("A.VN6"));
  EXPECT_EQ(document->GUID(), guid);
  document->SaveDocAs(Name("b.vn6t"), 1);
  EXPECT_NE(document->GUID(), guid);
  EXPECT_EQ(document->DocType(), vndtTemplate);

  const auto made_from_template = Make<vnDocument>();
  ScopeOf(*document).IncrementIR();
  document->Save();
  ASSERT_TRUE(made_from_template->LoadDoc(Name("b.vn6t"), Text()));
  EXPECT_EQ(made_from_template->IR(), 1);
}

TEST_F(DocumentFile, ReportsItsProgressInOrder) {
  const auto document = Make<vnDocument>();
  document->NewStep()->SetLabel(u"a step");
  testing::RecordingListener saving(*document);
  ASSERT_TRUE(document->SaveAs(Name("a.vn6")));
  EXPECT_EQ(saving.Take(), SavingEvents() + Lines{"SaveComplete"});
  EXPECT_FALSE(platform::FileExists(TempSaveName(Name("a.vn6"))));

  const auto loaded = Make<vnDocument>();
  loaded->SetChangeEvents(false);
  testing::RecordingListener loading(*loaded);
  ASSERT_TRUE(loaded->Load(Name("a.vn6"), Text()));
  EXPECT_EQ(loading.Take(), kLoadingEvents + Lines{"LoadComplete"});
  EXPECT_TRUE(loaded->ChangeEvents());

  const auto talkative = Make<vnDocument>();
  talkative->SetChangeEventsLoading(true);
  testing::RecordingListener changes(*talkative);
  ASSERT_TRUE(talkative->Load(Name("a.vn6"), Text()));
  const std::string key = automation::ToUtf8(talkative->Steps()->Item(Variant(1))->Key());
  const std::string details = automation::ToUtf8(talkative->Details()->Key());
  EXPECT_EQ(changes.Take(),
            (Lines{"DetailsChange " + details + " 7", "DetailsChange " + details + " 2",
                   "DetailsChange " + details + " 3", "DetailsChange " + details + " 4",
                   "Loading 10", "Loading 20", "Loading 40", "StepAdded " + key, "Loading 60",
                   "Loading 90", "Loading 100", "LoadComplete"}));
}

TEST_F(DocumentFile, RefusesWithTheCodesThatHostsKnow) {
  const auto document = Make<vnDocument>();
  testing::RecordingListener events(*document);
  EXPECT_FALSE(document->Save());
  EXPECT_FALSE(document->SaveAs(Text()));
  EXPECT_EQ(events.Take(), (Lines{"SaveFailed 1", "SaveFailed 1"}));
  EXPECT_FALSE(document->Load(Text(), Text()));
  EXPECT_FALSE(document->Load(Name("missing.vn6"), Text()));
  EXPECT_EQ(events.Take(), (Lines{"LoadFailed 1", "LoadFailed 3"}));
  ASSERT_TRUE(document->SaveAs(Name("a.vn6")));
  events.Take();
  EXPECT_FALSE(document->Load(Name("a.vn6"), Text()));
  EXPECT_FALSE(document->LoadTempSave(Name("a.vn6"), Text()));
  EXPECT_EQ(events.Take(), (Lines{"LoadFailed 2", "LoadFailed 2"}));
}

TEST_F(DocumentFile, ComparesVersions) {
  struct Case {
    const char* text;
    bool result;
    Lines events;
  };
  const Case cases[] = {
      {"FV=2:DV=s1.2:", true, kLoadingEvents + Lines{"LoadComplete"}},
      // With the mark that an editor may put there.
      {"\xEF\xBB\xBF"
       "FV=2:DV=s1.2:",
       true, kLoadingEvents + Lines{"LoadComplete"}},
      {"FV=2:DV=s1.1:", true, kLoadingEvents + Lines{"LoadVersionError 2 1.1 12", "LoadComplete"}},
      {"FV=2:", true, kLoadingEvents + Lines{"LoadVersionError 2 1 12", "LoadComplete"}},
      {"FV=2:DV=s1.3:", true, kLoadingEvents + Lines{"LoadVersionError 2 1.3 13", "LoadFailed 13"}},
      {"FV=3:DV=s1.2:", false, {"LoadVersionError 3 1.2 11", "LoadFailed 11"}},
  };
  for (const Case& expected : cases) {
    Write("v.vn6", expected.text);
    const auto document = Make<vnDocument>();
    document->SetChangeEvents(false);
    testing::RecordingListener events(*document);
    EXPECT_EQ(document->Load(Name("v.vn6"), Text()), expected.result) << expected.text;
    EXPECT_EQ(events.Take(), expected.events) << expected.text;
    EXPECT_TRUE(document->ChangeEvents());
  }
}

TEST_F(DocumentFile, PasswordsGuardReadingAndWriting) {
  const auto document = Make<vnDocument>();
  document->NewStep();
  EXPECT_FALSE(document->SetReadPassword(u"read"));
  EXPECT_FALSE(document->SetWritePassword(u"write"));
  ASSERT_TRUE(document->SaveAs(Name("a.vn6")));

  const auto refused = Make<vnDocument>();
  testing::RecordingListener events(*refused);
  EXPECT_FALSE(refused->Load(Name("a.vn6"), u"READ"));
  EXPECT_EQ(events.Take(), Lines());
  EXPECT_FALSE(refused->AllowWrite());
  EXPECT_TRUE(refused->ChangeEvents());
  EXPECT_EQ(refused->Steps()->Count(), 0);

  const auto reader = Make<vnDocument>();
  ASSERT_TRUE(reader->Load(Name("a.vn6"), u"read"));
  EXPECT_FALSE(reader->AllowWrite());
  const std::string before = Read("a.vn6");
  testing::RecordingListener saving(*reader);
  EXPECT_FALSE(reader->Save());
  EXPECT_EQ(saving.Take(), Lines{"SaveFailed 2"});
  EXPECT_EQ(Read("a.vn6"), before);
  reader->SetWritePassword(u"mine");
  reader->EnableWrite(u"mine");
  EXPECT_FALSE(reader->AllowWrite());
  reader->EnableWrite(u"write");
  EXPECT_TRUE(reader->AllowWrite());
  EXPECT_TRUE(reader->Save());
}

TEST_F(DocumentFile, WhatWasNotReadIsWrittenBackAsItWas) {
  const std::string parts =
      "C=~64\"chart^j\":S=~64\"\":LK=~64\"links\":RH=~64\"history\":P=~64\"\":FDD=~64\"1\":"
      "FoD=~64\"2\":FDS=~64\"3\":FoS=~64\"4\":FDL=~64\"5\":FoL=~64\"6\":FL=~64\"7\":J=~64\"8\":"
      "CN=~64\"9\":PC=4:SPB=~64\"F\":Attach=~64\"a\":DBGUID=~64\"g\":ConStr=~64\"s\":CT=5:";
  Write("a.vn6", "FV=2:DV=s1.2:" + parts);
  const auto document = Make<vnDocument>();
  ASSERT_TRUE(document->Load(Name("a.vn6"), Text()));
  // A host that takes its bag away gives the kept text back, read or not.
  for (const bool read : {false, true}) {
    if (read) document->Attachments()->Add(u"b", Variant(1));
    ASSERT_TRUE(document->Save());
    EXPECT_EQ(Read("a.vn6").find("Attach=~64\"b=1:") != std::string::npos, read);
    document->SetAttachments(Make<Properties>().get());
    document->SetAttachments(nullptr);
    ASSERT_TRUE(document->Save());
    const std::string saved = Read("a.vn6");
    EXPECT_EQ(saved.substr(saved.find("C=~64")), parts);
  }
}

TEST_F(DocumentFile, AFailedSaveLeavesThePreviousFileAndItsTemporarySave) {
  const auto document = Make<vnDocument>();
  ASSERT_TRUE(document->SaveAs(Name("a.vn6")));
  testing::RecordingListener events(*document);
  EXPECT_FALSE(document->SaveAs(Name("no such folder/a.vn6")));
  EXPECT_EQ(events.Take(), SavingEvents() + Lines{"SaveFailed 2"});
  const auto loaded = Make<vnDocument>();
  EXPECT_TRUE(loaded->Load(Name("a.vn6"), Text()));
  EXPECT_TRUE(document->SaveAs(Name("a.vn6")));
}

TEST_F(DocumentFile, TheTemporarySaveOffersRecovery) {
  EXPECT_EQ(TempSaveName(u"plan.VN6"), u"plan.~vnc");
  EXPECT_EQ(TempSaveName(u"plan.vnc"), u"plan.~vnc");
  EXPECT_EQ(TempSaveName(u"plan.vn6t"), u"plan.vn6t.~vnc");
  EXPECT_EQ(TempSaveName(u"x"), u"x.~vnc");

  const auto document = Make<vnDocument>();
  document->NewStep()->SetLabel(u"kept");
  ASSERT_TRUE(document->SaveAs(Name("a.vn6")));
  EXPECT_EQ(document->TempSaveTest(Name("a.vn6")), 0);
  document->TempSaveDocument();
  const auto file_time = std::filesystem::last_write_time(folder_ / "a.vn6");
  std::filesystem::last_write_time(folder_ / "a.~vnc", file_time);
  EXPECT_EQ(document->TempSaveTest(Name("a.vn6")), 1);
  std::filesystem::last_write_time(folder_ / "a.~vnc", file_time + std::chrono::seconds(2));
  EXPECT_EQ(document->TempSaveTest(Name("a.vn6")), 2);

  // Without a file there is nothing to recover, and nothing is touched.
  std::filesystem::rename(folder_ / "a.vn6", folder_ / "away");
  EXPECT_FALSE(Make<vnDocument>()->LoadTempSave(Name("a.vn6"), Text()));
  EXPECT_TRUE(platform::FileExists(Name("a.~vnc")));
  Write("a.vn6", "cut short");
  const auto recovered = Make<vnDocument>();
  ASSERT_TRUE(recovered->LoadTempSave(Name("a.vn6"), Text()));
  EXPECT_EQ(recovered->FileName(), Name("a.vn6"));
  EXPECT_EQ(Read("a.vn6.aside-1"), "cut short");
  const auto loaded = Make<vnDocument>();
  ASSERT_TRUE(loaded->Load(Name("a.vn6"), Text()));
  EXPECT_EQ(loaded->Steps()->Item(Variant(1))->Label(), u"kept");
  document->TempSaveClear();
  EXPECT_EQ(document->TempSaveTest(Name("a.vn6")), 0);
}

// Does something when the load has come so far.
struct LoadingHandler : DocumentListener {
  LoadingHandler(vnDocument& to, std::function<void()> what) : document(to), act(std::move(what)) {
    document.AddListener(this);
  }
  ~LoadingHandler() override { document.RemoveListener(this); }
  void Loading(int16_t percent) override {
    if (percent == 20) act();
  }
  vnDocument& document;
  std::function<void()> act;
};

TEST_F(DocumentFile, AFileThatWasNotReadWholeIsPutAside) {
  const auto source = Make<vnDocument>();
  source->SetReadPassword(u"read");
  source->NewStep()->SetLabel(u"first");
  source->NewStep()->SetInstructions(u"all of them");
  ASSERT_TRUE(source->SaveAs(Name("a.vn6")));
  const std::string sound = Read("a.vn6");
  const auto with = [&](std::string_view sought, std::string_view put) {
    std::string bytes = sound;
    return bytes.replace(bytes.find(sought), sought.size(), put);
  };
  const auto load = [](vnDocument& document, const Text& name) {
    EXPECT_TRUE(document.Load(name, u"read"));
  };
  const auto read_all = [&](vnDocument& document, const Text& name) {
    load(document, name);
    document.Steps()->Item(Variant(1))->SetLabel(u"changed");
  };
  using Work = std::function<void(vnDocument&, const Text&)>;
  struct Case {
    const char* what;
    std::string bytes;
    Work load;
    bool put_aside = true;
  };
  const Case cases[] = {
      {"sound", sound, read_all, false},
      {"a stray byte before all parts", with(":DT=0:", ":DT=?:"), load},
      {"a stray byte behind all entries", sound + "x", load},
      {"a stray byte in a step, which nobody reads", with("TBL=0:F", "TBL=?:F"), load},
      {"a stray byte in a step", with("TBL=0:F", "TBL=?:F"), read_all},
      {"an unknown version", with("FV=2:", "FV=3:"),
       [](vnDocument& document, const Text& name) { EXPECT_FALSE(document.Load(name, Text())); }},
      {"a wrong password", sound,
       [](vnDocument& document, const Text& name) {
         EXPECT_FALSE(document.Load(name, u"wrong"));
         document.EnableWrite(Text());
       }},
      {"a listener that fails", sound,
       [](vnDocument& document, const Text& name) {
         const LoadingHandler handler(document, [] { throw automation::Error(5); });
         EXPECT_THROW(document.Load(name, u"read"), automation::Error);
       }},
      {"a save while it is loaded", sound,
       [](vnDocument& document, const Text& name) {
         const LoadingHandler handler(document, [&] { EXPECT_TRUE(document.Save()); });
         EXPECT_TRUE(document.Load(name, u"read"));
       }},
  };
  for (const Case& test : cases) {
    SCOPED_TRACE(test.what);
    Write("b.vn6", test.bytes);
    Write("b.vn6.aside-1", "an earlier one");
    Write("b.~vnc", "a good one");
    const auto document = Make<vnDocument>();
    test.load(*document, Name("b.vn6"));
    testing::RecordingListener events(*document);
    ASSERT_TRUE(document->Save());
    EXPECT_EQ(events.Take(), SavingEvents() + Lines{"SaveComplete"});
    EXPECT_EQ(Read("b.vn6.aside-1"), "an earlier one");
    EXPECT_EQ(Read("b.vn6.aside-2"), test.put_aside ? test.bytes : "(no such file)");
    EXPECT_EQ(Read("b.~vnc.aside-1"), test.put_aside ? "a good one" : "(no such file)");
    EXPECT_EQ(document->TempSaveTest(Name("b.vn6")), 0);
    // From now on the file holds all that the document holds.
    ASSERT_TRUE(document->Save());
    EXPECT_EQ(Read("b.vn6.aside-3"), "(no such file)");
    for (const char* const aside : {"b.vn6.aside-2", "b.~vnc.aside-1"}) {
      std::filesystem::remove(folder_ / aside);
    }
  }
}

TEST_F(DocumentFile, HostsAreToldWhatWasNotRead) {
  const auto source = Make<vnDocument>();
  source->NewStep()->NewTask()->SetName(u"Pay");
  ASSERT_TRUE(source->SaveAs(Name("a.vn6")));
  const std::string sound = Read("a.vn6");
  const auto told = [&](const std::string& bytes) {
    Write("b.vn6", bytes);
    const auto document = Make<vnDocument>();
    document->Load(Name("b.vn6"), Text());
    Lines lines;
    for (const NotRead& what : document->WhatWasNotRead()) {
      lines.push_back(what.place + " " + std::to_string(what.offset) + " " +
                      std::to_string(what.size));
    }
    return lines;
  };
  EXPECT_EQ(told(sound), Lines());
  EXPECT_EQ(told(sound + "x"), Lines{" " + std::to_string(sound.size()) + " 1"});
  EXPECT_EQ(told("FV=3:DV=s1.2:"), Lines{" 0 13"});
  // In a task that nobody has read: from the value that is none to the end of the task.
  const size_t at = sound.find("MT=0:");
  const size_t end = sound.find("^C", at);
  const Ref<vnStep> step = source->Steps()->Item(Variant(1));
  const Text place = u"S/T" + step->Key() + u"/T/T" + step->Tasks()->Item(Variant(1))->Key();
  EXPECT_EQ(
      told(sound.substr(0, at) + "MT=?" + sound.substr(at + 4)),
      Lines{automation::ToUtf8(place) + " " + std::to_string(at) + " " + std::to_string(end - at)});
}

TEST_F(DocumentFile, HostsCanAskWhetherTheFileHasChanged) {
  const auto document = Make<vnDocument>();
  EXPECT_FALSE(document->FileChangedSinceLoad());
  ASSERT_TRUE(document->SaveAs(Name("a.vn6")));
  EXPECT_FALSE(document->FileChangedSinceLoad());
  const auto other = Make<vnDocument>();
  ASSERT_TRUE(other->Load(Name("a.vn6"), Text()));
  EXPECT_FALSE(other->FileChangedSinceLoad());
  const std::string before = Read("a.vn6");
  ASSERT_TRUE(other->Save());
  EXPECT_FALSE(other->FileChangedSinceLoad());
  EXPECT_TRUE(document->FileChangedSinceLoad());
  Write("a.vn6", before);
  EXPECT_FALSE(document->FileChangedSinceLoad());
  EXPECT_TRUE(other->FileChangedSinceLoad());
  std::filesystem::remove(folder_ / "a.vn6");
  EXPECT_TRUE(document->FileChangedSinceLoad());
}

TEST_F(DocumentFile, OlderFilesGoThroughTheConverter) {
  Write("old.vn5", "anything at all");
  const auto document = Make<vnDocument>();
  try {
    document->Load(Name("old.vn5"), Text());
    FAIL();
  } catch (const automation::Error& error) {
    EXPECT_EQ(error.number(), 429);
    EXPECT_NE(error.description().find(u"VNDoc6Converters.VN5"), Text::npos);
  }
  EXPECT_TRUE(document->ChangeEvents());
  EXPECT_EQ(document->FileName(), u"");
  EXPECT_THROW(document->SetIR(1), automation::Error);

  automation::RegisterFactory(u"VNDoc6Converters.VN5", [] {
    return Ref<automation::Object>(testing::MakeScriptedObject(
        "VN5", {{u"ImportDocument", [](std::span<const Variant> arguments) {
                   automation::Object& target = *arguments[1].ToObject();
                   automation::Put(target, u"IR", {Variant(41)});
                   automation::Put(target, u"GUID", {Variant(u"from the old file")});
                   automation::Call(target, u"SetFieldDefsSteps", {Variant(u"f"), Variant(u"g")});
                   automation::Call(target, u"NewStep");
                   return Variant(0);
                 }}}));
  });
  EXPECT_TRUE(document->Load(Name("old.vn5"), Text()));
  automation::RegisterFactory(u"VNDoc6Converters.VN5", {});
  EXPECT_EQ(document->IR(), 42);
  EXPECT_EQ(document->GUID(), u"from the old file");
  EXPECT_EQ(automation::Get(*document->FieldDefsSteps(), u"Text"), Variant(u"f"));
  EXPECT_EQ(document->Steps()->Count(), 1);
  EXPECT_EQ(document->FileName(), u"");
  EXPECT_EQ(Read("old.vn5"), "anything at all");
  // The conversion moved the counter; the first save does not move it again.
  EXPECT_TRUE(document->SaveAs(Name("new.vn6")));
  EXPECT_EQ(document->IR(), 42);
}

TEST_F(DocumentFile, WhatAHostHoldsStaysTheSameThroughALoad) {
  struct Reader : DocumentListener {
    void Loading(int16_t percent) override {
      if (percent != 60) return;
      details = document->FieldDefsDetails();
      steps = document->FieldDefsSteps();
    }
    vnDocument* document = nullptr;
    Ref<automation::Object> details, steps;
  } reader;
  const auto source = Make<vnDocument>();
  source->Links()->Add(Make<vnLink>().get());
  source->Details()->NewRevision(u"why");
  ASSERT_TRUE(source->SaveAs(Name("a.vn6")));

  const auto document = Make<vnDocument>();
  const auto links = document->Links();
  const auto chart = document->Chart();
  const auto history = document->RevisionHistory();
  const auto steps_fields = document->FieldDefsSteps();
  reader.document = document.get();
  document->AddListener(&reader);
  testing::RecordingListener events(*document);
  ASSERT_TRUE(document->Load(Name("a.vn6"), Text()));
  document->RemoveListener(&reader);
  // Reset all at once, and late: what was read meanwhile goes, too.
  EXPECT_EQ(reader.steps, steps_fields);
  EXPECT_NE(document->FieldDefsSteps(), steps_fields);
  EXPECT_NE(document->FieldDefsDetails(), reader.details);
  EXPECT_EQ(document->Links(), links);
  EXPECT_EQ(links->Count(), 1);
  EXPECT_NE(document->Chart(), chart);
  EXPECT_NE(document->RevisionHistory(), history);
  EXPECT_EQ(document->RevisionHistory()->Count(), 1);
  EXPECT_EQ(events.Take(), kLoadingEvents + Lines{"LoadComplete"});
}

// Every prefix of a file, and any one byte of it changed: a clear outcome, and a document that can
// be saved.
TEST_F(DocumentFile, DamagedFilesEndClearly) {
  const auto source = Make<vnDocument>();
  for (int i = 0; i < 3; ++i) {
    const Ref<vnStep> step = source->NewStep();
    step->SetLabel(u"\"quoted\" ^ and : more");
    step->Figure()->SetLeft(10);
    step->NewTask();
  }
  ASSERT_TRUE(source->SaveAs(Name("a.vn6")));
  const std::string whole = Read("a.vn6");
  const auto load = [&](const std::string& bytes) {
    Write("b.vn6", bytes);
    const auto document = Make<vnDocument>();
    try {
      if (!document->Load(Name("b.vn6"), Text())) return;
    } catch (const automation::Error& error) {
      EXPECT_EQ(error.number(), 429);  // no version left: an older file, as it seems
      return;
    }
    for (int32_t i = 1; i <= document->Steps()->Count(); ++i) {
      const Ref<vnStep> step = document->Steps()->Item(Variant(i));
      step->Label();
      step->Figure()->Font();
      step->Tasks()->Count();
    }
    EXPECT_TRUE(document->SaveAs(Name("c.vn6")));
  };
  for (size_t size = 0; size < whole.size(); size += 41) load(whole.substr(0, size));
  for (size_t at = 0; at < whole.size(); at += 53) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << at % 8));
    load(damaged);
  }
}

}  // namespace
}  // namespace vndoc6
