// Random documents and template libraries, saved and loaded: whatever a host can read comes back.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "bag/bag_scanner.h"
#include "platform/file_system.h"
#include "schema/signature.h"
#include "tests/support/random_document.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/content/compare.h"
#include "vndoc6/content/content.h"
#include "vndoc6/templates/template_library.h"

namespace vndoc6 {
namespace {

using automation::ClassInfo;
using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;
using testing::RandomContent;
using Lines = std::vector<std::string>;

constexpr uint32_t kDocuments = 40;

// What a load does not bring back, and what hosts rely on there.
struct Irregularity {
  std::string_view class_name;
  TextView property;
  const char* reason;
};
constexpr Irregularity kIrregularities[] = {
    {"vnDocument", u"Edition", "not saved: it is the running host's"},
    {"vnDocument", u"DocumentVersion", "a save writes the version that saves"},
    {"vnDetails", u"Key", "made when details without one are saved"},
    {"vnFigure", u"Key", "lives as long as the figure"},
    {"vnFigure", u"PictureIndex", "an index while a host runs"},
    {"vnChart", u"ShadowOffsetX", "every load gives 120"},
    {"vnChart", u"PageMarginsColour", "read from the flag that shows the margins"},
};

bool IsRegular(const Difference& difference) {
  return std::none_of(std::begin(kIrregularities), std::end(kIrregularities),
                      [&](const Irregularity& irregularity) {
                        return irregularity.class_name == difference.class_name &&
                               irregularity.property == difference.property;
                      });
}

Lines Describe(const std::vector<Difference>& differences) {
  Lines lines;
  for (const Difference& difference : differences) {
    lines.push_back(automation::ToUtf8(DescribeDifference(difference)));
  }
  return lines;
}

Lines RegularDifferences(Object& left, Object& right) {
  std::vector<Difference> differences = Compare(left, right);
  std::erase_if(differences, [](const auto& difference) { return !IsRegular(difference); });
  return Describe(differences);
}

Lines AllButIdentity(Object& left, Object& right) {
  return Describe(Compare(left, right, {.ignore_identity = true}));
}

Ref<vnDocument> Load(const Text& name) {
  const auto document = Make<vnDocument>();
  EXPECT_TRUE(document->Load(name, u""));
  return document;
}

// The entries of a saved document as they lie in the file, under their keys.
std::map<std::string, std::string> Entries(const Text& name) {
  const bag::KeptText file(bag::SharedBytes(platform::ReadWholeFile(name).value()));
  std::map<std::string, std::string> entries;
  bag::BagScanner scanner(file);
  bag::BagEntry entry;
  while (scanner.Next(entry)) {
    Variant value;
    EXPECT_TRUE(scanner.ValueOf(entry, value));
    entries[std::string(entry.key)] = automation::ToUtf8(value.ToText());
  }
  EXPECT_FALSE(scanner.faulty());
  return entries;
}

TEST(RoundTrip, BringsBackWhateverAHostCanRead) {
  const testing::TemporaryFolder folder;
  for (uint32_t seed = 1; seed <= kDocuments; ++seed) {
    SCOPED_TRACE(seed);
    RandomContent content(seed);
    const Ref<vnDocument> document = RandomDocument(content);
    const Text name = folder.Name(std::to_string(seed) + ".vn6");
    ASSERT_TRUE(document->SaveAs(name));
    const Ref<vnDocument> loaded = Load(name);
    ASSERT_EQ(RegularDifferences(*document, *loaded), Lines{});

    // Once everything was read, the next save brings the same values again.
    ASSERT_TRUE(loaded->Save());
    ASSERT_EQ(AllButIdentity(*loaded, *Load(name)), Lines{});
  }
}

TEST(RoundTrip, KeepsTheTextsOfWhatNobodyReads) {
  const testing::TemporaryFolder folder;
  for (uint32_t seed = 1; seed <= kDocuments; ++seed) {
    SCOPED_TRACE(seed);
    RandomContent content(seed);
    const Text name = folder.Name(std::to_string(seed) + ".vn6");
    ASSERT_TRUE(RandomDocument(content)->SaveAs(name));
    auto before = Entries(name);
    ASSERT_TRUE(Load(name)->Save());
    auto after = Entries(name);
    EXPECT_NE(before.at("IR"), after.at("IR"));
    before.erase("IR");
    after.erase("IR");
    ASSERT_EQ(before, after);
  }
}

TEST(RoundTrip, OfATemplateLibrary) {
  const testing::TemporaryFolder folder;
  for (uint32_t seed = 1; seed <= kDocuments; ++seed) {
    SCOPED_TRACE(seed);
    RandomContent content(seed);
    const auto library = Make<vnTemplateLibrary>();
    content.Fill(*library);
    const Text name = folder.Name(std::to_string(seed) + ".vnl");
    library->SaveAs(name);
    const auto loaded = Make<vnTemplateLibrary>();
    loaded->Load(name);
    ASSERT_EQ(RegularDifferences(*library, *loaded), Lines{});
  }
}

// The properties that can be put of a class and of all classes below it.
void CollectPuts(const ClassInfo& info, std::set<std::string>& puts) {
  for (const automation::MemberInfo& member : info.members()) {
    const automation::TypeKind kind =
        member.parameters.empty() ? member.result.kind : member.parameters.back().type.kind;
    const bool plain_put = member.kind == automation::CallKind::kPut;
    if (plain_put || kind == automation::TypeKind::kFont ||
        kind == automation::TypeKind::kPicture) {
      if (member.kind != automation::CallKind::kGet) {
        puts.insert(std::string(info.name()) + "." + member.name);
      }
    }
  }
  for (const ContentMember& content : ContentOf(info)) {
    if (content.part != nullptr) CollectPuts(*content.part, puts);
  }
  if (const ClassInfo* member = MemberClassOf(info)) CollectPuts(*member, puts);
}

TEST(RoundTrip, TriesEveryProperty) {
  std::set<std::string> puts = {"FieldDefs.Text", "FieldValues.Text", "FormDef.Text"};
  CollectPuts(vnDocument::classInfo(), puts);
  // Conversions of older files set these.
  puts.erase("vnDocument.IR");
  puts.erase("vnDocument.GUID");
  std::set<std::string> put;
  for (uint32_t seed = 1; seed <= kDocuments; ++seed) {
    RandomContent content(seed);
    RandomDocument(content);
    put.insert(content.put().begin(), content.put().end());
  }
  EXPECT_EQ(put, puts);
}

}  // namespace
}  // namespace vndoc6
