#include "vndoc6/process/attachment_list.h"

#include <gtest/gtest.h>

#include "automation/inside.h"
#include "tests/support/acts_once.h"
#include "tests/support/recording_listener.h"
#include "tests/support/saved_text.h"
#include "vndoc6/document/document.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/steps.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Ref;
using automation::Variant;
using testing::Kept;
using testing::SavedText;
using Lines = std::vector<std::string>;

struct Files {
  using List = vnFiles;
  using Member = vnFile;
  static constexpr const char* kEvent = "StepFileChange";
  static Ref<vnFiles> Of(vnStep& step) { return step.Files(); }
  static Ref<vnFiles> Of(vnDocument& document) { return document.Files(); }
};
struct Jumps {
  using List = vnJumps;
  using Member = vnJump;
  static constexpr const char* kEvent = "StepJumpChange";
  static Ref<vnJumps> Of(vnStep& step) { return step.Jumps(); }
  static Ref<vnJumps> Of(vnDocument& document) { return document.Jumps(); }
};

// What files and jumps have in common.
template <class Kind>
class AttachmentListTest : public ::testing::Test {
 protected:
  using List = typename Kind::List;
  using Member = typename Kind::Member;

  static Ref<Member> Keyed(const Text& key) {
    const auto member = Make<Member>();
    member->SetKey(key);
    return member;
  }
  static std::string Event(const std::string& arguments) {
    return std::string(Kind::kEvent) + " " + arguments;
  }

  Ref<vnDocument> document_ = Make<vnDocument>();
  Ref<vnStep> step_ = document_->NewStep();
  Ref<List> of_step_ = Kind::Of(*step_);
  Ref<List> of_document_ = Kind::Of(*document_);
  testing::RecordingListener listener_{*document_};
};

using Kinds = ::testing::Types<Files, Jumps>;
TYPED_TEST_SUITE(AttachmentListTest, Kinds);

TYPED_TEST(AttachmentListTest, WhatAStepGetsTheDocumentGetsFirst) {
  const auto member = this->Keyed(u"k");
  this->of_step_->Add(member.get());
  EXPECT_EQ(member->Step(), this->step_);
  EXPECT_EQ(member->Document(), this->document_);
  EXPECT_EQ(this->of_step_->Item(Variant(u"k")), member);
  EXPECT_EQ(this->of_document_->Item(Variant(1)), member);
  EXPECT_EQ(this->listener_.Take(), (Lines{this->Event("k 1 0"), this->Event("k 1 0")}));
}

TYPED_TEST(AttachmentListTest, RemovalFromAStepLeavesTheDocuments) {
  this->of_step_->Add(this->Keyed(u"k").get());
  this->listener_.Take();
  this->of_step_->Remove(Variant(u"K"));
  EXPECT_EQ(this->of_step_->Count(), 0);
  EXPECT_EQ(this->of_document_->Count(), 1);
  EXPECT_EQ(this->listener_.Take(), Lines{this->Event("k 2 0")});
}

TYPED_TEST(AttachmentListTest, TakenKeysEndAddWithoutAChange) {
  this->of_step_->Add(this->Keyed(u"k").get());
  this->listener_.Take();
  const auto second = this->Keyed(u"K");
  this->of_step_->Add(second.get());
  this->of_step_->Add(nullptr);
  EXPECT_EQ(this->of_step_->Count(), 1);
  EXPECT_FALSE(second->Document());
  EXPECT_FALSE(second->Step());
  EXPECT_EQ(this->listener_.Take(), Lines{});
}

TYPED_TEST(AttachmentListTest, AKeyTakenInTheDocumentAloneIsAddedToTheStep) {
  this->of_document_->Add(this->Keyed(u"k").get());
  this->listener_.Take();
  this->of_step_->Add(this->Keyed(u"k").get());
  EXPECT_EQ(this->of_step_->Count(), 1);
  EXPECT_EQ(this->of_document_->Count(), 1);
  EXPECT_EQ(this->listener_.Take(), Lines{this->Event("k 1 0")});
}

TYPED_TEST(AttachmentListTest, PutsReportTheirOwnNumbers) {
  const auto member = this->Keyed(u"k");
  member->SetFileName(u"no document, no event");
  this->of_document_->Add(member.get());
  EXPECT_FALSE(member->Step());
  this->listener_.Take();
  member->SetDisplayName(u"name");
  member->SetFileName(u"name");
  member->SetFileName(u"name");
  member->SetKey(u"other");
  EXPECT_EQ(this->listener_.Take(),
            (Lines{this->Event("k 0 1"), this->Event("k 0 2"), this->Event("k 0 2")}));
}

TYPED_TEST(AttachmentListTest, AStepsListReportsWhatItReads) {
  const auto source = Make<vnStep>();
  for (const Text& key : testing::kHostileKeys) {
    TypeParam::Of(*source)->Add(this->Keyed(key).get());
  }
  this->step_->Load(source->Save());
  EXPECT_EQ(this->listener_.Take(), Lines{});
  EXPECT_EQ(TypeParam::Of(*this->step_)->Count(), TypeParam::Of(*source)->Count());
  // Twice each: the document's list has them now.
  EXPECT_EQ(this->listener_.Take().size(), 2 * std::size(testing::kHostileKeys));
  EXPECT_EQ(this->of_document_->Count(), TypeParam::Of(*source)->Count());
}

TYPED_TEST(AttachmentListTest, AHandlerMayLetGoOfEverything) {
  const testing::ActsOnce handler(*this->document_, TypeParam::kEvent, [this] {
    this->document_->Steps()->RemoveAll();
    this->of_document_->RemoveAll();
    this->step_ = nullptr;
    this->of_step_ = nullptr;
  });
  this->of_step_->Add(this->Keyed(u"k").get());
  EXPECT_EQ(this->of_document_->Count(), 0);
  EXPECT_EQ(this->listener_.Take().size(), 2U);
}

}  // namespace
}  // namespace vndoc6
