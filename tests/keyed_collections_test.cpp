// What all collections of keyed members have in common.
#include <gtest/gtest.h>

#include "automation/inside.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/condition.h"
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
using testing::SavedText;
using Lines = std::vector<std::string>;

// One collection; what it reports when "k" comes and goes, and the beginning of its saved text.
template <class Collection, class T>
struct Kind {
  using List = Collection;
  using Member = T;
};
struct Conditions : Kind<vnConditions, vnCondition> {
  static inline const Lines kAdded{"ConditionChange k 1"};
  static inline const Lines kRemoved{"ConditionChange k 2"};
  static constexpr std::string_view kSaved = R"(Cb=~64"K^ab^A)";
};
struct Containers : Kind<vnContainers, vnContainer> {
  static inline const Lines kAdded{"ContainerAdded k"};
  static inline const Lines kRemoved{"ContainerRemoved k"};
  static constexpr std::string_view kSaved = R"(Cb=~64"K^ab^A)";
};
struct Links : Kind<vnLinks, vnLink> {
  static inline const Lines kAdded{"LinkAdded k"};
  static inline const Lines kRemoved{};
  static constexpr std::string_view kSaved = R"(Lb=~64"K^ab^A)";
};
struct Tasks : Kind<vnTasks, vnTask> {
  static inline const Lines kAdded{"TaskChange k 1"};
  static inline const Lines kRemoved{"TaskChange k 2"};
  static constexpr std::string_view kSaved = R"(Tb=~64"K^ab^A)";
};
struct Files : Kind<vnFiles, vnFile> {
  static inline const Lines kAdded{"StepFileChange k 1 0"};
  static inline const Lines kRemoved{"StepFileChange k 2 0"};
  static constexpr std::string_view kSaved = R"(F1=~64"K^ab^A)";
};
struct Jumps : Kind<vnJumps, vnJump> {
  static inline const Lines kAdded{"StepJumpChange k 1 0"};
  static inline const Lines kRemoved{"StepJumpChange k 2 0"};
  static constexpr std::string_view kSaved = R"(J1=~64"K^ab^A)";
};

template <class K>
class KeyedCollection : public ::testing::Test {
 protected:
  using List = typename K::List;
  using Member = typename K::Member;

  static Ref<Member> Keyed(const Text& key) {
    const auto member = Make<Member>();
    Inside::StoreKey(*member, key);
    return member;
  }

  Ref<vnDocument> document_ = Make<vnDocument>();
  Ref<List> list_ = [this] {
    const auto list = Make<List>();
    Inside::TakeDocument(*list, document_.get());
    return list;
  }();
  testing::RecordingListener listener_{*document_};
};

using Kinds = ::testing::Types<Conditions, Containers, Links, Tasks, Files, Jumps>;
TYPED_TEST_SUITE(KeyedCollection, Kinds);

TYPED_TEST(KeyedCollection, ReportsWhatComesAndGoes) {
  const auto member = this->Keyed(u"k");
  this->list_->Add(member.get());
  EXPECT_EQ(Variant(member->Document()), Variant(this->document_));
  EXPECT_EQ(this->listener_.Take(), TypeParam::kAdded);
  for (const Variant& nothing : {Variant(u"other"), Variant(0), Variant(2), Variant(member)}) {
    this->list_->Remove(nothing);
  }
  EXPECT_EQ(this->listener_.Take(), Lines{});
  EXPECT_EQ(this->list_->Item(Variant(u"K")), member);
  this->list_->Remove(Variant(u"K"));
  EXPECT_EQ(this->list_->Count(), 0);
  EXPECT_EQ(this->listener_.Take(), TypeParam::kRemoved);
  this->list_->Add(member.get());
  this->listener_.Take();
  this->list_->RemoveAll();
  EXPECT_EQ(this->list_->Count(), 0);
  EXPECT_EQ(Variant(member->Document()), Variant(this->document_));
  EXPECT_EQ(this->listener_.Take(), Lines{});
}

TYPED_TEST(KeyedCollection, FillsEmptyKeysAndRefusesTakenOnesInAnyLetterCase) {
  const auto first = this->Keyed(u"");
  const auto second = this->Keyed(u"");
  this->list_->Add(first.get());
  this->list_->Add(second.get());
  EXPECT_FALSE(first->Key().empty());
  EXPECT_NE(first->Key(), second->Key());
  this->list_->Add(this->Keyed(u"straße").get());
  ASSERT_EQ(this->list_->Count(), 3);
  this->listener_.Take();
  this->list_->Add(this->Keyed(u"STRAßE").get());
  this->list_->Add(nullptr);
  EXPECT_EQ(this->list_->Count(), 3);
  EXPECT_EQ(this->listener_.Take(), Lines{});
}

TYPED_TEST(KeyedCollection, SavesAnyKeyAndReadsItBack) {
  const auto list = Make<typename TestFixture::List>();
  EXPECT_EQ(SavedText(*list), "");
  list->Add(this->Keyed(u"b").get());
  for (const Text& key : testing::kHostileKeys) list->Add(this->Keyed(key).get());
  const std::string saved = SavedText(*list);
  EXPECT_EQ(saved.substr(0, TypeParam::kSaved.size()), TypeParam::kSaved);
  const auto loaded = Make<typename TestFixture::List>();
  Inside::Read(*loaded, testing::Kept(saved));
  EXPECT_EQ(SavedText(*loaded), saved);
  for (const Text& key : testing::kHostileKeys) {
    ASSERT_TRUE(loaded->Item(Variant(key)));
    EXPECT_EQ(loaded->Item(Variant(key))->Key(), key);
  }
  // A document's own list was in it already.
  if constexpr (requires { Inside::ReadQuietly(*this->list_, testing::Kept(saved)); }) {
    Inside::ReadQuietly(*this->list_, testing::Kept(saved));
    EXPECT_EQ(this->listener_.Take(), Lines{});
    EXPECT_EQ(Variant(this->list_->Item(Variant(1))->Document()), Variant(this->document_));
    EXPECT_EQ(SavedText(*this->list_), saved);
  }
}

}  // namespace
}  // namespace vndoc6
