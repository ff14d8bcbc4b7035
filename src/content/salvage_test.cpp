#include "vndoc6/content/salvage.h"

#include <gtest/gtest.h>

#include "tests/support/saved_text.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Variant;
using Lines = std::vector<std::string>;

// Two steps with the keys "a" and "b", and a link between them.
std::string File() {
  const auto document = Make<vnDocument>();
  for (const char16_t* key : {u"a", u"b"}) {
    const auto step = Make<vnStep>();
    step->Load(u"", key);
    document->Steps()->Add(step.get());
    step->SetLabel(Text(u"Step ") + key);
    step->PerformedBy()->Add(Variant(u"Role"));
  }
  const auto link = Make<vnLink>();
  link->Load(u"", u"l");
  link->SetOriginStepKey(u"a");
  link->SetDestinationStepKey(u"b");
  document->Links()->Add(link.get());
  return testing::SavedText(*document);
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, text.npos) << from;
  return at != text.npos ? text.replace(at, from.size(), to) : text;
}

std::string Described(const Damage& damage) {
  constexpr const char* kKinds[] = {"lost ", "missing ", "unknown ", "twice ", "mended "};
  const std::string size = damage.size != 0 ? ' ' + std::to_string(damage.size) : "";
  return kKinds[static_cast<size_t>(damage.kind)] + damage.place +
         (damage.keys.empty() ? size : ": " + damage.keys);
}

Lines Damages(const Salvaged& salvaged) {
  Lines lines;
  for (const Damage& damage : salvaged.damages) lines.push_back(Described(damage));
  return lines;
}

struct Case {
  const char* from;
  const char* to;
  Lines damages;
};

// The file is as it was before, whatever the damage meant.
TEST(Salvage, MendsKeysOpeningsAndClosings) {
  const std::string file = File();
  for (const Case& damaged :
       std::vector<Case>{{"PB^b", "PC^b", {"mended S/Ta/PB 2"}},
                         {"PB^b", "PB^c", {"mended S/Ta/PB 2"}},
                         {"FV=2:", "FU=2:", {"mended FV 2"}},
                         {"LK=~64\"", "LK=64\"", {"mended LK 1", "mended LK 3"}},
                         {"\":LK", "x:LK", {"mended S 2"}},
                         {"^D^C^BD", "^D^B^BD", {"mended S/Ta/PB/TR1 3"}},
                         {"L^bStep a^B", "L^bStep a^b", {"mended S/Ta/L 1"}},
                         {"Tb^a", "T^a", {"mended S/Tb: K"}}}) {
    const Salvaged salvaged = Salvage(Replaced(file, damaged.from, damaged.to));
    EXPECT_EQ(Damages(salvaged), damaged.damages) << damaged.from << " -> " << damaged.to;
    EXPECT_EQ(salvaged.text, file);
  }
}

TEST(Salvage, TellsWhatIsLost) {
  const std::string file = File();
  const std::string links =
      file.substr(file.find("LK=~64"), file.find("RH=~64") - file.find("LK=~64"));
  for (const Case& damaged :
       std::vector<Case>{{"SI=1:", "SI=\":", {"missing S/Ta: SI", "lost S/Ta 5"}},
                         {"FV=2:", "FV=::", {"missing : FV", "lost  5"}},
                         {"CT=0:", "", {"missing : CT", "lost "}},
                         {links.c_str(), "", {"missing : LK"}},
                         {"CT=0:", "CT=0:Future=5:", {"unknown Future 9"}},
                         {"IR=", "IR=7:IR=", {"lost  5"}}}) {
    const Salvaged salvaged = Salvage(Replaced(file, damaged.from, damaged.to));
    EXPECT_EQ(Damages(salvaged), damaged.damages) << damaged.from << " -> " << damaged.to;
  }
  EXPECT_EQ(Salvage("no document").text, "");
  EXPECT_EQ(Salvage("").text, "");
}

// A file that an older version wrote lacks what that version did not know.
TEST(Salvage, ExpectsOfAnOlderFileNoMoreThanItHas) {
  std::string file = Replaced(File(), "DV=s1.2:", "DV=s1.1:");
  file = Replaced(file, "PC=0:", "");
  EXPECT_EQ(Damages(Salvage(file)), Lines{});
}

// Where an opening and a closing went together, two objects have run into one.
TEST(Salvage, PartsWhatHasRunIntoOne) {
  const std::string file = File();
  const Salvaged steps = Salvage(Replaced(file, "^ATb^a", "\x01\x02\x03"));
  EXPECT_EQ(steps.text, file);
  const Salvaged lists = Salvage(Replaced(file, "\":LK=~64\"", ""));
  EXPECT_EQ(lists.text, file);
}

}  // namespace
}  // namespace vndoc6
