#include "vndoc6/titles/titles.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/scripted_object.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/error.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/document/document.h"
#include "vndoc6/titles/title_ref.h"

namespace vndoc6 {
namespace {

using automation::Make;
using automation::Object;
using automation::Ref;
using automation::Variant;

// A document whose title handler is made of these functions.
class TitleHandler : public ::testing::Test {
 protected:
  TitleHandler() : factory_(u"Test.Handler", [this] { return MakeHandler(); }) {
    Use(u"Test.Handler");
  }

  void Use(const char16_t* name) {
    document_->GetProperties()->SetValue(u"Titles Handler", Variant(name));
  }
  static void AddTitle(Object& document, int32_t id, const Text& reference, const Text& name) {
    automation::Call(*automation::Get(document, u"Titles").ToObject(), u"AddTitle",
                     {Variant(id), Variant(reference), Variant(name)});
  }
  Ref<Object> MakeHandler() {
    ++consulted_;
    const auto document = std::make_shared<Ref<Object>>();
    return testing::MakeScriptedObject(
        "Handler", {{u"RequiresDirect", [this](auto) { return requires_direct_(); }},
                    {u"Document",
                     [document](std::span<const Variant> arguments) {
                       *document = arguments[0].ToObject();
                       return Variant();
                     }},
                    {u"Database",
                     [this](std::span<const Variant> arguments) {
                       database_ = arguments[0].ToObject();
                       return Variant();
                     }},
                    {u"LoadTitles", [this, document](auto) { return load_(*document); }}});
  }

  Ref<vnDocument> document_ = Make<vnDocument>();
  Ref<vnTitles> titles_ = document_->Titles();
  std::function<Variant()> requires_direct_ = [] { return Variant(false); };
  std::function<Variant(Ref<Object>&)> load_ = [](Ref<Object>& document) {
    AddTitle(*document, 7, u"mgr", u"Manager");
    AddTitle(*document, 8, u"dir", u"Director");
    return Variant(0);
  };
  Ref<Object> database_;
  int consulted_ = 0;
  testing::RegisteredFactory factory_;
};

TEST(Titles, WithoutAHandlerTheFirstReadEmptiesTheList) {
  const auto document = Make<vnDocument>();
  const Ref<vnTitles> titles = document->Titles();
  titles->AddTitle(1, u"early", u"Early");
  EXPECT_EQ(titles->Count(), 0);
  EXPECT_FALSE(titles->HandlerAvailable());
  EXPECT_FALSE(titles->UsingHandler());
  EXPECT_EQ(titles->HandlerName(), u"");
  EXPECT_EQ(titles->HandlerRequiresDirect(), VNRDNotRequired);
  titles->AddTitle(2, u"late", u"Late", u"stays");
  EXPECT_EQ(titles->Count(), 1);
  titles->Reset();
  EXPECT_EQ(titles->Count(), 0);
}

TEST(Titles, ADocumentWhoseHostTookThePropertiesAwayHasNoHandler) {
  const auto document = Make<vnDocument>();
  document->SetProperties(nullptr);
  EXPECT_EQ(document->Titles()->HandlerName(), u"");
  EXPECT_EQ(document->Titles()->Count(), 0);
}

TEST_F(TitleHandler, FillsTheListOnTheFirstRead) {
  titles_->AddTitle(1, u"early", u"Early");
  EXPECT_TRUE(titles_->UsingHandler());
  EXPECT_EQ(consulted_, 0);
  EXPECT_EQ(titles_->Item(Variant(u"EARLY")), nullptr);
  const Ref<vnTitle> title = titles_->Item(Variant(u"MGR"));
  ASSERT_TRUE(title);
  EXPECT_EQ(title->ID(), 7);
  EXPECT_EQ(title->DisplayName(), u"Manager");
  EXPECT_EQ(title->Titles(), titles_);
  EXPECT_EQ(title->Document(), document_);
  EXPECT_EQ(titles_->Item(Variant(2))->Ref(), u"dir");
  EXPECT_EQ(titles_->Item(Variant(3)), nullptr);
  EXPECT_TRUE(titles_->HandlerAvailable());
  Ref<Object> member;
  EXPECT_TRUE(titles_->NewEnum()->Next(member));
  EXPECT_EQ(member, title);
  EXPECT_EQ(consulted_, 1);
  EXPECT_EQ(database_, nullptr);
  titles_->Remove(Variant(u"mgr"));
  titles_->Remove(Variant(u"unknown"));
  EXPECT_EQ(titles_->Count(), 1);
  titles_->Reset();
  EXPECT_EQ(titles_->Count(), 2);
  EXPECT_EQ(consulted_, 2);
}

TEST_F(TitleHandler, RetiredIdentifiersAreRewritten) {
  const testing::RegisteredFactory current(u"VNPerformers.VNTitlesList",
                                           [this] { return MakeHandler(); });
  for (const char16_t* retired : {u"VNTL2.VNTitlesList", u"VNTLStd.VNTitlesList"}) {
    Use(retired);
    titles_->Reset();
    EXPECT_TRUE(titles_->HandlerAvailable());
    EXPECT_EQ(titles_->HandlerName(), u"VNPerformers.VNTitlesList");
  }
}

TEST_F(TitleHandler, ThatNeedsADatabaseIsAskedUntilOneIsBound) {
  requires_direct_ = [] { return Variant(true); };
  EXPECT_EQ(titles_->HandlerRequiresDirect(), VNRDRequired);
  consulted_ = 0;
  EXPECT_EQ(titles_->Count(), 0);
  EXPECT_FALSE(titles_->HandlerAvailable());
  EXPECT_EQ(consulted_, 2);
  const Ref<Object> database = testing::MakeScriptedObject("osDatabase", {});
  document_->SetDatabase(database.get());
  EXPECT_EQ(titles_->Count(), 2);
  EXPECT_TRUE(titles_->HandlerAvailable());
  EXPECT_EQ(database_, database);
  EXPECT_EQ(consulted_, 3);
  // Another database: the titles are read again.
  document_->SetDatabase(database.get());
  EXPECT_TRUE(titles_->HandlerAvailable());
  EXPECT_EQ(consulted_, 4);
}

TEST_F(TitleHandler, IsConsultedAgainAfterALoad) {
  const testing::TemporaryFolder folder;
  const Text file = folder.Name("a.vn6");
  ASSERT_TRUE(document_->SaveAs(file));
  const auto loaded = Make<vnDocument>();
  EXPECT_FALSE(loaded->Titles()->HandlerAvailable());
  ASSERT_TRUE(loaded->Load(file, Text()));
  EXPECT_TRUE(loaded->Titles()->HandlerAvailable());
}

TEST_F(TitleHandler, FailuresAreQuietAndCountAsTried) {
  const auto fail = []() -> Variant { throw automation::Error(1000, u"no directory"); };
  const auto succeed = load_;
  const auto check = [this](int expected_count) {
    titles_->Reset();
    consulted_ = 0;
    EXPECT_FALSE(titles_->HandlerAvailable());
    EXPECT_EQ(titles_->Count(), expected_count);
    EXPECT_EQ(consulted_, 1);
  };
  const auto after_one_title = [](const Variant& result) {
    return [result](Ref<Object>& document) {
      AddTitle(*document, 1, u"one", u"One");
      return result;
    };
  };
  load_ = after_one_title(Variant(5));
  check(1);
  load_ = after_one_title(Variant(u"not a number"));
  check(1);
  load_ = after_one_title(Variant(3e9));
  check(1);
  load_ = [&](Ref<Object>& document) {
    AddTitle(*document, 1, u"one", u"One");
    return fail();
  };
  check(1);
  load_ = succeed;
  requires_direct_ = fail;
  check(0);
  EXPECT_EQ(titles_->HandlerRequiresDirect(), VNRDUnknown);
  requires_direct_ = [] { return Variant(u"perhaps"); };
  check(0);
  EXPECT_EQ(titles_->HandlerRequiresDirect(), VNRDUnknown);

  Use(u"Test.NoSuchHandler");
  titles_->Reset();
  EXPECT_FALSE(titles_->HandlerAvailable());
  EXPECT_TRUE(titles_->UsingHandler());
  EXPECT_EQ(titles_->HandlerRequiresDirect(), VNRDUnknown);
  const testing::RegisteredFactory empty(u"Test.Empty",
                                         [] { return testing::MakeScriptedObject("Empty", {}); });
  Use(u"Test.Empty");
  titles_->Reset();
  EXPECT_EQ(titles_->Count(), 0);
  document_->GetProperties()->SetValue(u"Titles Handler", Variant(MakeHandler()));
  EXPECT_FALSE(titles_->UsingHandler());
}

TEST_F(TitleHandler, KnownOnesAreNotCreatedToBeAsked) {
  for (const char16_t* name : {u"VNPerformers.VNEnterpriseList", u"VNPerformers.VNEnterpriseUsers",
                               u"VNPerformers.VNEnterpriseGroups"}) {
    Use(name);
    EXPECT_EQ(titles_->HandlerRequiresDirect(), VNRDRequired);
  }
  Use(u"VNPerformers.VNTitlesList");
  EXPECT_EQ(titles_->HandlerRequiresDirect(), VNRDNotRequired);
}

TEST_F(TitleHandler, MayAddOneReferenceThousandsOfTimes) {
  Ref<Object> last;
  load_ = [&](Ref<Object>& document) {
    for (int32_t i = 0; i < 5000; ++i) {
      last = titles_->AddTitle(i, u"same", u"Name");
      AddTitle(*document, i, u"SAME", u"Name");
    }
    return Variant(0);
  };
  EXPECT_EQ(titles_->Count(), 1);
  EXPECT_EQ(titles_->Item(Variant(1))->ID(), 0);
  EXPECT_EQ(automation::Get(*last, u"ID").ToLong(), 4999);
  EXPECT_EQ(automation::Get(*last, u"Titles").ToObject(), nullptr);
  EXPECT_EQ(automation::Get(*last, u"Document").ToObject(), nullptr);
}

TEST_F(TitleHandler, MayReadTheListWhileItFillsIt) {
  std::vector<int32_t> counts;
  load_ = [&](Ref<Object>& document) {
    for (const char16_t* reference : {u"a", u"b"}) {
      AddTitle(*document, 1, reference, u"");
      counts.push_back(titles_->Count());
    }
    return Variant(0);
  };
  EXPECT_TRUE(titles_->HandlerAvailable());
  EXPECT_EQ(counts, (std::vector<int32_t>{1, 2}));
  EXPECT_EQ(consulted_, 1);
}

TEST_F(TitleHandler, MayLetGoOfTheDocument) {
  load_ = [this](Ref<Object>& document) {
    AddTitle(*document, 1, u"only", u"Only");
    document = nullptr;
    document_ = nullptr;
    titles_ = nullptr;
    return Variant(0);
  };
  vnTitles& titles = *titles_;
  EXPECT_EQ(titles.Count(), 1);
}

// Held by the reference that asks.
TEST_F(TitleHandler, MayLetGoOfTheDocumentOfAReference) {
  Ref<vnTitleRefs> references = titles_->TitleRefsObj();
  load_ = [&](Ref<Object>& document) {
    AddTitle(*document, 1, u"only", u"Only");
    document = nullptr;
    document_ = nullptr;
    titles_ = nullptr;
    references = nullptr;
    return Variant(0);
  };
  EXPECT_EQ(references.get()->Add(Variant(u"only"))->DisplayName(), u"Only");
}

}  // namespace
}  // namespace vndoc6
