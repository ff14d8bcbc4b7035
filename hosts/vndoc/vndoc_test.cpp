// The program as its users run it: a command line in, output, errors and an exit status back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "command.h"
#include "tests/support/random_document.h"
#include "tests/support/temporary_folder.h"

namespace vndoc {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

struct Outcome {
  int status;
  std::string out;
  std::string err;
};

class VndocTest : public ::testing::Test {
 protected:
  Outcome Vndoc(std::vector<std::string> arguments, const std::string& input = "") {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    Context context{in, out, err, false, {}, {}};
    arguments.insert(arguments.begin(), "vndoc");
    std::vector<const char*> argv;
    for (const std::string& argument : arguments) argv.push_back(argument.c_str());
    const int status = vndoc::Run(static_cast<int>(argv.size()), argv.data(), context);
    return {status, out.str(), err.str()};
  }
  std::string File(const char* name) const { return (folder_.path() / name).string(); }
  // A document made from an outline.
  std::string Document(const std::string& outline, const char* name = "plan.vn6") {
    const Outcome made = Vndoc({"new", File(name), "--from", "-", "--force"}, outline);
    EXPECT_EQ(made.err, "");
    return File(name);
  }
  std::string Bytes(const char* name) const {
    std::ifstream stream(File(name), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
  }
  std::string Get(const std::string& file, const std::string& path) {
    const Outcome outcome = Vndoc({"edit", file, "get", path});
    return outcome.out + outcome.err;
  }

  vndoc6::testing::TemporaryFolder folder_;
};

TEST_F(VndocTest, JsonGivesAnEqualDocumentWhateverItHolds) {
  for (uint32_t seed = 1; seed <= 4; ++seed) {
    const std::string original = File("original.vn6");
    vndoc6::testing::RandomContent content(seed);
    ASSERT_TRUE(vndoc6::testing::RandomDocument(content)->SaveAs(folder_.Name("original.vn6")));
    const std::string json = Vndoc({"show", "--json", original}).out;
    const Outcome outcome = Vndoc({"from-json", "-", File("copy.vn6")}, json);
    EXPECT_EQ(outcome.err, "") << "seed " << seed;
    EXPECT_EQ(Vndoc({"show", "--json", File("copy.vn6")}).out, json) << "seed " << seed;
    const Outcome diff = Vndoc({"diff", original, File("copy.vn6")});
    EXPECT_EQ(diff.out, "") << "seed " << seed;
    std::filesystem::remove(original);
  }
}

constexpr const char* kOutline =
    "# Buying\n"
    "Ask @Employee\n"
    "Complete? [Decision]\n"
    "  no -> Ask\n"
    "  yes -> Order\n"
    "Order @Purchasing\n"
    "  - Write it\n"
    "  > To the cheapest\n"
    "  -> Archive\n"
    "Archive\n";

TEST_F(VndocTest, OutlineBecomesADocumentThatShowTellsOf) {
  const Outcome shown = Vndoc({"show", Document(kOutline)});
  EXPECT_EQ(shown.status, kDone);
  EXPECT_EQ(shown.out,
            "Buying\n"
            "\nSteps\n"
            "  1. Ask\n"
            "       by Employee\n"
            "  2. Complete?\n"
            "  3. Order\n"
            "       To the cheapest\n"
            "       by Purchasing\n"
            "       task: Write it\n"
            "  4. Archive\n"
            "\nFlow\n"
            "  1. Ask\n"
            "  -> 2. Complete?\n"
            "    * [no] 1. Ask (see above)\n"
            "    * [yes] 3. Order\n"
            "      -> 4. Archive\n"
            "\nRoles\n"
            "  Employee: 1\n"
            "  Purchasing: 3\n"
            "\nContainers\n"
            "  Decision: 2\n");
}

TEST_F(VndocTest, ShowTellsWhenALinkIsTaken) {
  const std::string file = Document(kOutline);
  Vndoc({"edit", file, "set", "Links/1/ConditionExpression", "asked = 1"});
  Vndoc({"edit", file, "set", "Containers/1/Description", "To be decided"});
  Vndoc({"edit", file, "call", "Links/1/NewCondition", "Open", "hour > 8"});
  const std::string shown = Vndoc({"show", file}).out;
  EXPECT_THAT(shown, HasSubstr("  -> (if asked = 1; Open: hour > 8) 2. Complete?\n"));
  EXPECT_THAT(shown, HasSubstr("  Decision: 2 (To be decided)\n"));
}

TEST_F(VndocTest, OutlineAtFaultIsRefusedByLineAndMakesNoFile) {
  for (const auto& [outline, why] : std::vector<std::pair<std::string, std::string>>{
           {"A\n\n  yes ->\n", "line 3: the link leads nowhere"},
           {"  - task\n", "line 1: this belongs below a step"},
           {"A [B\n", "line 1: the [ is not closed"},
           {"@Role\n", "line 1: a step needs a name"}}) {
    const Outcome made = Vndoc({"new", File("plan.vn6"), "--from", "-"}, outline);
    EXPECT_EQ(made.status, kFailed);
    EXPECT_THAT(made.err, HasSubstr(why));
    EXPECT_FALSE(std::filesystem::exists(File("plan.vn6")));
  }
  EXPECT_EQ(Get(Document("C\\@D \\[x\\]\n"), "Steps/1/Label"), "C@D [x]\n");
}

TEST_F(VndocTest, TerminalGetsNothingItWouldObey) {
  const std::string file = Document("A\n");
  Vndoc({"edit", file, "set", "Details/Title", "a\x1b[31m\nb\xe2\x80\xae"});
  EXPECT_THAT(Vndoc({"show", file}).out, HasSubstr("a [31m b \n"));
}

TEST_F(VndocTest, EditReachesMembersByPath) {
  const std::string file = Document(kOutline);
  EXPECT_EQ(Vndoc({"edit", file, "set", "steps/1/LABEL", "Ask / \"nicely\""}).err, "");
  EXPECT_EQ(Get(file, "Steps/ItemByStepIndex(1)/Label"), "Ask / \"nicely\"\n");
  Vndoc({"edit", file, "set", "Steps/1/Figure/Shape", "vnsTermination"});
  EXPECT_EQ(Get(file, "Steps/1/Figure/Shape"), "58\n");
  Vndoc({"edit", file, "call", "Properties/Add", "a/\"b", "5"});
  EXPECT_EQ(Get(file, "Properties/\"a/\"\"b\"/TypeName"), "Long\n");
  Vndoc({"edit", file, "call", "Properties/Add", "x", "\"5\""});
  EXPECT_EQ(Get(file, "Properties/x/TypeName"), "String\n");
  EXPECT_EQ(Get(file, "Properties/Item(\"x\")/Value"), "5\n");
  EXPECT_THAT(Vndoc({"edit", file, "call", "CopyStep", "@Steps/3"}).out, HasSubstr("\"Order\""));
  EXPECT_EQ(Get(file, "Steps/Count"), "5\n");
}

TEST_F(VndocTest, EditRefusesInOneLineAndLeavesTheFileAlone) {
  const std::string file = Document(kOutline);
  const std::string before = Get(file, "IR");
  for (const auto& [arguments, why] : std::vector<std::pair<std::vector<std::string>, std::string>>{
           {{"get", "Steps/99/Label"}, "there is no \"99\""},
           {{"get", "Nope"}, "vnDocument has no member Nope"},
           {{"set", "Steps/1/Key", "k"}, "vnStep.Key can only be read"},
           {{"set", "Steps/1/StepIndex", "x"}, "Type mismatch."},
           {{"set", "Steps/1/Label"}, "set takes one value"},
           {{"call", "CopyStep", "Steps/1"}, "poStep takes an object"},
           {{"get", "Steps/\"x"}, "a quote that is not closed"},
           {{"get", "Steps/Item(1"}, "a bracket that is not closed"},
           {{"get", "Details/Title/x"}, "\"Title\" is no object"}}) {
    std::vector<std::string> all = {"edit", file};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Outcome outcome = Vndoc(all);
    EXPECT_EQ(outcome.status, kFailed);
    EXPECT_THAT(outcome.err, HasSubstr(why));
    EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << outcome.err;
  }
  EXPECT_EQ(Get(file, "IR"), before);
}

TEST_F(VndocTest, PasswordsOpenReadingAndWriting) {
  const std::string file = Document(kOutline);
  Vndoc({"edit", file, "call", "SetWritePassword", "w"});
  EXPECT_THAT(Vndoc({"edit", file, "set", "Details/Title", "x"}).err, HasSubstr("write password"));
  EXPECT_EQ(Vndoc({"edit", file, "set", "Details/Title", "x", "--write-password", "w"}).err, "");
  EXPECT_EQ(Vndoc({"--write-password", "w", "edit", file, "call", "SetReadPassword", "r"}).err, "");
  EXPECT_THAT(Vndoc({"show", file}).err, HasSubstr("needs its password"));
  EXPECT_THAT(Vndoc({"show", file, "--password", "no"}).err, HasSubstr("wrong password"));
  EXPECT_THAT(Vndoc({"show", file, "--password", "r"}).out, HasSubstr("x\n"));
}

TEST_F(VndocTest, CheckFindsFixesAndTellsByItsStatus) {
  const std::string file = Document(kOutline);
  EXPECT_EQ(Vndoc({"check", file}).status, kDone);
  EXPECT_EQ(Vndoc({"check", file}).out, "");
  Vndoc({"edit", file, "call", "Steps/Remove", "4"});
  Vndoc({"edit", file, "call", "Steps/2/Dependancies/Add", Get(file, "Steps/3/Key").substr(0, 38),
         "x"});
  Vndoc({"edit", file, "call", "Steps/3/Dependancies/Add", Get(file, "Steps/2/Key").substr(0, 38),
         "x"});
  const Outcome found = Vndoc({"check", file});
  EXPECT_EQ(found.status, kFindings);
  EXPECT_THAT(found.out, HasSubstr("dangling link"));
  EXPECT_THAT(found.out, HasSubstr("circular dependency"));
  const Outcome fixed = Vndoc({"check", "--fix", "--json", file});
  EXPECT_EQ(fixed.status, kFindings);
  EXPECT_THAT(fixed.out, HasSubstr("\"fixed\":true"));
  EXPECT_THAT(Vndoc({"check", file}).out, Not(HasSubstr("dangling")));
  EXPECT_EQ(Vndoc({"check", file, File("none.vn6")}).status, kFailed);
}

TEST_F(VndocTest, CheckFindsJumpsThatLeadNowhere) {
  const std::string file = File("plan.vn6");
  Vndoc(
      {"from-json", "-", file},
      R"({"Steps": [{"Label": "A", "Jumps": [{"FileName": "plan.vn6"}, {"FileName": "gone.vn6"}]}]})");
  EXPECT_EQ(Vndoc({"check", file}).out,
            file + ": dangling jump: the jump to \"gone.vn6\" leads to no file\n");
}

TEST_F(VndocTest, WhatCannotBeFixedIsToldAllTheSame) {
  const std::string file = Document(kOutline);
  Vndoc({"edit", file, "call", "Steps/Remove", "4"});
  Vndoc({"edit", file, "call", "SetWritePassword", "w"});
  const Outcome checked = Vndoc({"check", "--fix", file});
  EXPECT_EQ(checked.status, kFailed);
  EXPECT_THAT(checked.err, HasSubstr("needs its write password to be changed"));
  EXPECT_THAT(checked.out, HasSubstr("lacks a step at one end\n"));
  EXPECT_THAT(Vndoc({"check", "--fix", file, "--write-password", "w"}).out, HasSubstr("(fixed)"));
  EXPECT_EQ(Vndoc({"check", file, "--write-password", "w"}).status, kDone);
}

TEST_F(VndocTest, ADependencyThatLeadsNowhereIsOneFindingThatCanBeFixed) {
  const std::string file = Document("A\nB\n");
  Vndoc({"edit", file, "call", "Steps/2/Dependancies/Add", "gone", "x"});
  // The save took it out again: put it into the file.
  std::string bytes = Bytes("plan.vn6");
  const size_t at = bytes.rfind("CS=0:^A");
  ASSERT_NE(at, bytes.npos);
  bytes.insert(at, "DP^bgone^cx^C^B");
  folder_.Write("plan.vn6", bytes);
  const Outcome found = Vndoc({"check", file});
  EXPECT_EQ(found.status, kFindings);
  EXPECT_EQ(found.out,
            file + ": dangling dependency: step 2 \"B\" depends on a step that is gone\n");
  EXPECT_EQ(Vndoc({"check", "--fix", file}).status, kDone);
  EXPECT_EQ(Vndoc({"check", file}).out, "");
}

TEST_F(VndocTest, CheckTellsOfUnknownKeysAndDamagedTexts) {
  Document(kOutline);
  const std::string bytes = Bytes("plan.vn6");
  const std::string sound = Vndoc({"check", File("plan.vn6")}).out;
  folder_.Write("plan.vn6", "\xEF\xBB\xBF" + bytes);
  EXPECT_EQ(Vndoc({"check", File("plan.vn6")}).out, sound);
  folder_.Write("plan.vn6", bytes + "Future=5:");
  const auto newer = Vndoc({"check", File("plan.vn6")});
  EXPECT_EQ(newer.out,
            File("plan.vn6") + ": unknown key: Future is not known; saves keep it\n" + sound);
  EXPECT_EQ(newer.status, kDone);
  folder_.Write("plan.vn6", bytes.substr(0, bytes.rfind("CT=")));
  EXPECT_THAT(Vndoc({"check", File("plan.vn6")}).out, HasSubstr("damaged text: the file lacks CT"));
  folder_.Write("plan.vn6", bytes + "=damaged");
  EXPECT_THAT(Vndoc({"check", File("plan.vn6")}).out,
              HasSubstr("does not parse from byte " + std::to_string(bytes.size())));
}

TEST_F(VndocTest, CountsThatLieCostNothing) {
  std::string file = "FV=2:DV=s1.2:LK=~64\"";
  for (int i = 0; i < 60; ++i) file += "L" + std::to_string(i) + "^aL^bEPC=1000000:^B^A";
  folder_.Write("counts.vn6", file + "\":");
  const std::clock_t start = std::clock();
  EXPECT_LT(Vndoc({"check", File("counts.vn6")}).out.size(), 60'000u);
  EXPECT_LT(Vndoc({"show", "--json", File("counts.vn6")}).out.size(), 1'000'000u);
  EXPECT_LT(std::clock() - start, 20 * CLOCKS_PER_SEC);
}

TEST_F(VndocTest, FixNumbersTheStepsAnewInTheirOrder) {
  const std::string file = Document("A\nB\nC\nD\n");
  std::string bytes = Bytes("plan.vn6");
  for (const auto& [from, to] : {std::pair("SI=2:", "SI=1:"), std::pair("SI=4:", "SI=9:")}) {
    const size_t at = bytes.find(from);
    ASSERT_NE(at, bytes.npos);
    bytes.replace(at, 5, to);
  }
  folder_.Write("plan.vn6", bytes);
  const Outcome found = Vndoc({"check", file});
  EXPECT_THAT(found.out, HasSubstr("duplicate number"));
  EXPECT_THAT(found.out, HasSubstr("missing number"));
  Vndoc({"check", "--fix", file});
  EXPECT_THAT(Vndoc({"check", file}).out, Not(HasSubstr("number")));
  for (int i = 1; i <= 4; ++i) {
    EXPECT_EQ(Get(file, "Steps/ItemByStepIndex(" + std::to_string(i) + ")/Label"),
              std::string(1, static_cast<char>('A' + i - 1)) + '\n');
  }
}

TEST_F(VndocTest, RecoverSalvagesAFileThatBreaksOff) {
  const std::string file = Document(kOutline);
  std::filesystem::resize_file(file, std::filesystem::file_size(file) / 2);
  const Outcome recovered = Vndoc({"recover", file, "-o", File("new.vn6")});
  EXPECT_EQ(recovered.status, kFindings);
  EXPECT_THAT(recovered.err, HasSubstr("lost: the file from byte"));
  EXPECT_EQ(Get(File("new.vn6"), "Steps/1/Label"), "Ask\n");
  folder_.Write("plan.vn6", "no document");
  EXPECT_EQ(Vndoc({"recover", file, "-o", File("none.vn6")}).status, kFailed);
  EXPECT_FALSE(std::filesystem::exists(File("none.vn6")));
}

TEST_F(VndocTest, RecoverOffersTheNewerTemporarySaveAndTakesIt) {
  const std::string file = Document("Older\n");
  EXPECT_THAT(Vndoc({"recover", file}).out, HasSubstr("no newer temporary save\n"));
  std::filesystem::copy_file(Document("Newer\n", "newer.vn6"), File("plan.~vnc"));
  std::filesystem::last_write_time(
      File("plan.~vnc"), std::filesystem::last_write_time(file) + std::chrono::seconds(1));
  const Outcome offered = Vndoc({"recover", file});
  EXPECT_EQ(offered.status, kDone);
  EXPECT_THAT(offered.out, HasSubstr("--temp-save takes what was saved before it"));
  EXPECT_EQ(Get(file, "Steps/1/Label"), "Older\n") << "an offer changes nothing";
  const Outcome taken = Vndoc({"recover", "--temp-save", file});
  EXPECT_EQ(taken.status, kDone) << taken.err;
  EXPECT_EQ(Get(file, "Steps/1/Label"), "Newer\n");
  EXPECT_FALSE(std::filesystem::exists(File("plan.~vnc")));
  const Outcome again = Vndoc({"recover", "--temp-save", file});
  EXPECT_EQ(again.status, kFailed);
  EXPECT_THAT(again.err, HasSubstr("plan.~vnc: No such file"));
}

TEST_F(VndocTest, WhatWasNotReadIsToldAndNeverOverwritten) {
  const std::string file = Document(kOutline);
  std::string damaged = Bytes("plan.vn6");
  damaged.replace(damaged.find(":DT=0:"), 6, ":DT=?:");
  folder_.Write("plan.vn6", damaged);
  const std::string advice = "`vndoc recover \"" + file + "\" -o NEW` salvages";
  using Arguments = std::vector<std::string>;
  for (const Arguments& reader : {Arguments{"show", file},
                                  {"show", "--json", file},
                                  {"check", file},
                                  {"diff", file, file},
                                  {"render", file, "-o", File("x.svg")},
                                  {"report", file, "-o", File("x.html")},
                                  {"edit", file, "get", "Steps/Count"}}) {
    const Outcome read = Vndoc(reader);
    EXPECT_EQ(read.status, kFindings) << reader[0];
    EXPECT_THAT(read.err, HasSubstr("could not be read from byte " +
                                    std::to_string(damaged.find("DT=?")) + " on; " + advice));
  }
  for (const Arguments& writer : {Arguments{"edit", file, "set", "Details/Title", "x"},
                                  {"layout", "--all", file},
                                  {"edit", file, "call", "NewStep", "-o", File("x.vn6")},
                                  {"check", "--fix", file}}) {
    const Outcome refused = Vndoc(writer);
    EXPECT_EQ(refused.status, kFailed) << writer[0];
    EXPECT_THAT(refused.err, HasSubstr(advice)) << writer[0];
    EXPECT_EQ(Bytes("plan.vn6"), damaged) << writer[0];
  }
  EXPECT_FALSE(std::filesystem::exists(File("x.vn6")));
  const Outcome told = Vndoc({"recover", file});
  EXPECT_EQ(told.status, kFindings);
  EXPECT_THAT(told.out, HasSubstr(file + ": is damaged; -o FILE salvages"));
  EXPECT_THAT(told.out, HasSubstr("missing: the file: DT\n"));

  EXPECT_EQ(Vndoc({"edit", file, "set", "Details/Title", "x", "--force"}).status, kDone);
  EXPECT_EQ(Get(file, "Steps/Count"), "0\n");
  EXPECT_EQ(Bytes("plan.vn6.aside-1"), damaged);
  EXPECT_THAT(Vndoc({"recover", file}).out, HasSubstr(file + ".aside-1: was put aside by a save"));
  Vndoc({"recover", file + ".aside-1", "-o", File("new.vn6")});
  EXPECT_EQ(Get(File("new.vn6"), "Steps/Count"), "4\n");
}

TEST_F(VndocTest, TemporarySaveIsTakenWhateverBecameOfTheDocument) {
  Document("Good\n", "good.vn6");
  const std::string good = Bytes("good.vn6");
  const std::string file = File("plan.vn6");
  EXPECT_EQ(Vndoc({"recover", file}).status, kFailed);
  folder_.Write("plan.~vnc", good);
  EXPECT_THAT(Vndoc({"recover", file}).out, HasSubstr("is not there; --temp-save takes"));
  EXPECT_EQ(Vndoc({"recover", "--temp-save", file}).status, kDone);
  EXPECT_EQ(Get(file, "Steps/1/Label"), "Good\n");
  // A damaged one takes nothing's place.
  const std::string before = Bytes("plan.vn6");
  folder_.Write("plan.~vnc", good + "x");
  EXPECT_THAT(Vndoc({"recover", "--temp-save", file}).err, HasSubstr("plan.~vnc: damaged: 1 byte"));
  EXPECT_EQ(Bytes("plan.vn6"), before);
  EXPECT_EQ(Bytes("plan.~vnc"), good + "x");
}

// Step 5 of 20 with one byte damaged: the others stay, whatever the byte meant.
TEST_F(VndocTest, RecoverKeepsWhatStandsBehindTheDamage) {
  std::string outline;
  for (int i = 1; i <= 20; ++i) outline += "Step no " + std::to_string(i) + "\n";
  Document(outline);
  const std::string bytes = Bytes("plan.vn6");
  const size_t label = bytes.find("Step no 5^");
  const size_t start = bytes.rfind("^a", label);
  const size_t end = bytes.find("^A", label);
  const size_t parts_end = bytes.find("\":", label);
  for (const auto& [at, damage] :
       std::vector<std::pair<size_t, char>>{{bytes.find("S=~64") + 1, 'x'},
                                            {bytes.find("S=~64") + 2, '"'},
                                            {bytes.find("S=~64") + 5, 'x'},
                                            {start - 5, '='},
                                            {start, 'x'},
                                            {start + 1, 'x'},
                                            {label, '"'},
                                            {label + 9, 'x'},
                                            {label + 10, 'A'},
                                            {end - 2, '"'},
                                            {end, 'x'},
                                            {end + 1, 'x'},
                                            {end + 1, 'B'},
                                            {parts_end, 'x'},
                                            {parts_end + 1, 'x'}}) {
    std::string damaged = bytes;
    damaged[at] = damage;
    folder_.Write("plan.vn6", damaged);
    const Outcome recovered = Vndoc({"recover", File("plan.vn6"), "-o", File("new.vn6")});
    const std::string where = recovered.err + damaged.substr(at - 20, 60);
    EXPECT_EQ(recovered.status, kFindings) << where;
    const std::string shown = Vndoc({"show", File("new.vn6")}).out;
    for (int i = 1; i <= 20; ++i) {
      if (i == 5) continue;
      EXPECT_THAT(shown, HasSubstr(". Step no " + std::to_string(i) + "\n")) << where;
    }
  }
}

TEST_F(VndocTest, DiffEndsAsDiffDoes) {
  const std::string left = Document(kOutline, "left.vn6");
  std::filesystem::copy_file(left, File("right.vn6"));
  EXPECT_EQ(Vndoc({"diff", left, File("right.vn6")}).status, kDone);
  Vndoc({"edit", File("right.vn6"), "set", "Details/Title", "Selling"});
  const Outcome diff = Vndoc({"diff", "--ignore-identity", left, File("right.vn6")});
  EXPECT_EQ(diff.status, kFindings);
  EXPECT_THAT(diff.out, HasSubstr("Details/Title: "));
  EXPECT_EQ(Vndoc({"diff", left, File("none.vn6")}).status, kFailed);
}

TEST_F(VndocTest, FromJsonMakesWhatOnlyOtherObjectsCanSupply) {
  const Outcome made = Vndoc({"from-json", "-", File("made.vn6")}, R"({
      "Details": {"Revision": 3},
      "Properties": [{"Key": "Titles Handler", "Value": "Host.Titles"}],
      "RevisionHistory": [{"Revision": 1.5, "RevisionDate": "2026-03-01", "IR": 3, "Reason": "a"},
                          {"Revision": 2, "RevisionDate": "2026-03-02", "IR": 4, "Reason": "b"}],
      "Steps": [{"Label": "A", "PerformedBy": [{"Ref": "t1", "DisplayName": "Clerk"}]}]})");
  EXPECT_EQ(made.status, kDone) << made.err;
  const auto get = [&](const char* path) { return Get(File("made.vn6"), path); };
  EXPECT_EQ(get("Steps/1/PerformedBy/1/Ref"), "t1\n");
  EXPECT_EQ(get("Steps/1/PerformedBy/1/DisplayName"), "Clerk\n");
  EXPECT_EQ(get("RevisionHistory/1/Revision"), "1.5\n");
  EXPECT_EQ(get("RevisionHistory/1/IR"), "3\n");
  EXPECT_EQ(get("RevisionHistory/2/RevisionDate"), "2026-03-02\n");
  EXPECT_EQ(get("Details/Revision"), "3\n");
}

TEST_F(VndocTest, FromJsonTellsWhatTheDocumentDidNotTake) {
  const std::string passed_over = std::string(500000, '[') + std::string(500000, ']');
  const Outcome made =
      Vndoc({"from-json", "-", File("made.vn6")},
            R"({"ExtensionCount": 3, "PagesCount": 2.0, "FileName": )" + passed_over + R"(,
      "Properties": [{"Key": "high", "Value": 9223372036854775808}, {"Key": "real", "Value": 2.0},
                     {"Key": "long", "Value": -2147483648}],
      "IR": -2147483648,
      "Steps": [{"Label": 7, "Key": "a"}, {"Key": "A", "Tasks": [{}]}, {"Label": "8"}]})");
  EXPECT_EQ(made.status, kDone);
  EXPECT_EQ(made.err,
            "vndoc: ExtensionCount: the document has another value\n"
            "vndoc: Steps/1/Label: the document has another value\n"
            "vndoc: Steps/2/Key: the document has another value\n"
            "vndoc: Steps/2/Tasks/1: the document has another value\n"
            "vndoc: Steps/3: the document has another value\n");
  const auto type = [&](const std::string& key) {
    return Get(File("made.vn6"), "Properties/" + key + "/TypeName");
  };
  EXPECT_EQ(type("high") + type("real") + type("long"), "Double\nDouble\nLong\n");
  EXPECT_EQ(Get(File("made.vn6"), "IR"), "-2147483648\n");
}

TEST_F(VndocTest, FromJsonRefusesWhatIsNoDocument) {
  for (const auto& [json, why] : std::vector<std::pair<std::string, std::string>>{
           {"{", "not JSON, at byte 2"},
           {"[]", "an object is expected"},
           {"1", "an object is expected"},
           {R"({"PagesCount": 1e999})", "not JSON, at byte 20"},
           {R"({"Stebs": []})", "vnDocument has no Stebs"},
           {R"({"Steps": {}})", "Steps/a list is expected"},
           {R"({"Details": []})", "Details/an object is expected"},
           {R"({"Steps": [{}, []]})", "Steps/2/an object is expected"},
           {R"({"Links": [{"Line": {"ExtraPointX": 1}}]})", "ExtraPointX: a value of another form"},
           {R"({"Steps": [{"Label": )" + std::string(500000, '['), "Label/not a value: a list"},
           {R"({"Steps": [{"Label": {"Nope": 1}}]})", "Steps/1/Label/not a value"},
           {R"({"Steps": [{"StepIndex": "x"}]})", "Steps/1/StepIndex: Type mismatch."},
           {R"({"Chart": {"Font": {"Size": "x"}}})", "Font/Size/not an amount: x"},
           {R"({"Steps": [{"Figure": {"Left": "x"}}]})",
            "Steps/1/Figure/Left/not a value: \"x\""}}) {
    const Outcome outcome = Vndoc({"from-json", "-", File("made.vn6")}, json);
    EXPECT_EQ(outcome.status, kFailed);
    EXPECT_THAT(outcome.err, HasSubstr(why));
    EXPECT_FALSE(std::filesystem::exists(File("made.vn6")));
  }
}

TEST_F(VndocTest, OutputThatCannotBeWrittenIsAnError) {
  std::istringstream in;
  std::ostringstream err;
  std::ofstream full("/dev/full");
  Context context{in, full, err, false, {}, {}};
  const std::string file = Document(kOutline);
  const char* const argv[] = {"vndoc", "show", file.c_str()};
  EXPECT_EQ(vndoc::Run(3, argv, context), kFailed);
  EXPECT_EQ(err.str(), "vndoc: the output can't be written\n");
}

TEST_F(VndocTest, HelpCompletionAndManualKnowEveryCommand) {
  Outcome help = Vndoc({"--help"});
  EXPECT_EQ(help.status, kDone);
  const std::string pages = Vndoc({"completion", "bash"}).out;
  const std::string manual = Vndoc({"man"}).out;
  for (const char* const command : {"new", "show", "from-json", "check", "diff", "edit", "members",
                                    "recover", "completion", "man"}) {
    EXPECT_THAT(help.out, HasSubstr(std::string("\n  ") + command + " "));
    EXPECT_THAT(pages, HasSubstr(std::string("    ") + command + ") options="));
    EXPECT_THAT(manual, HasSubstr(std::string(".SS ") +
                                  (command == std::string("from-json") ? "from\\-json" : command)));
    EXPECT_EQ(Vndoc({command, "--help"}).status, kDone);
  }
  EXPECT_THAT(Vndoc({"members", "vnstep"}).out, HasSubstr("set  Label(psLabel As String)"));
}

// The outline that --help shows is one.
TEST_F(VndocTest, OutlineInTheHelpIsTrue) {
  const std::string help = Vndoc({"new", "--help"}).out;
  const size_t start = help.find("  # Purchase approval");
  std::istringstream lines(help.substr(start, help.find("\n\n", start) - start));
  std::string outline;
  for (std::string line; std::getline(lines, line);) {
    constexpr size_t kRemarks = 34;
    outline += line.substr(0, line.size() > kRemarks ? kRemarks : line.size()) + '\n';
  }
  const std::string file = Document(outline);
  EXPECT_EQ(Get(file, "Steps/Count"), "4\n");
  EXPECT_EQ(Get(file, "Links/Count"), "4\n");
}

}  // namespace
}  // namespace vndoc
