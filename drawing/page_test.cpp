#include "page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "model.h"

namespace vndoc6::drawing {
namespace {

using testing::HasSubstr;
using testing::Not;

// A document with something in every section.
Ref<vnDocument> MakeProcedure() {
  const auto document = Make<vnDocument>();
  document->Details()->SetTitle(u"Purchase <approval>");
  document->Details()->SetDateApproved({46082});
  document->Details()->NewRevision(u"Faster & cheaper");
  const auto ask = document->NewStep();
  ask->SetLabel(u"Ask");
  ask->PerformedBy()->Add(Variant(u"Anyone"));
  ask->NewTask()->SetName(u"Write it down");
  const auto decide = document->NewStep();
  decide->SetLabel(u"Decide");
  decide->NewCondition(u"Rich", u"Money > \"5\"");
  const auto file = Make<vnFile>();
  file->SetFileName(u"javascript:alert(1)");
  decide->Files()->Add(file.get());
  const auto jump = Make<vnJump>();
  jump->SetDisplayName(u"Supplier");
  decide->Jumps()->Add(jump.get());
  const auto link = Make<vnLink>();
  link->SetDocument(document.get());
  link->SetOriginStepKey(ask->Key());
  link->SetDestinationStepKey(decide->Key());
  link->SetText(u"then");
  link->SetConditionExpression(u"asked = 1");
  link->NewCondition(u"Open", u"hour > 8");
  ask->SetForm(u"F-12");
  ask->SetDuration(u"2 days");
  ask->SetInstructions(u"Politely");
  ask->SetConditionExpression(u"budget > 0");
  decide->NewCondition(u"Known", u"id > 0");
  decide->Conditions()->Item(Variant(int32_t{2}))->SetFailMessage(u"Ask who it is");
  const auto container = Make<vnContainer>();
  container->SetLabel(u"Office");
  container->SetDescription(u"Second floor");
  dynamic_cast<vnContainers&>(*document->Containers().ToObject()).Add(container.get());
  ask->SetContainerKey(container->Key());
  const auto loose = Make<vnFile>();
  loose->SetDisplayName(u"Handbook");
  document->Files()->Add(loose.get());
  document->Links()->Add(link.get());
  return document;
}

std::set<std::string> Found(const std::string& page, const char* pattern) {
  std::set<std::string> found;
  const std::regex regex(pattern);
  for (std::sregex_iterator it(page.begin(), page.end(), regex), end; it != end; ++it) {
    found.insert((*it)[1]);
  }
  return found;
}

TEST(Page, TellsWhatIsInTheDocument) {
  const std::string page = WritePage(*MakeProcedure());
  EXPECT_THAT(page, HasSubstr("<title>Purchase &lt;approval&gt;</title>"));
  EXPECT_THAT(page, HasSubstr("<dd>2026-03-01</dd>"));
  EXPECT_THAT(page, HasSubstr("<dt>Performed by</dt>\n<dd><bdi>Anyone</bdi></dd>"));
  EXPECT_THAT(page, HasSubstr("<li><bdi>Write it down</bdi></li>"));
  EXPECT_THAT(page, HasSubstr("<bdi>then</bdi>: <a href=\"#step-2\">2. <bdi>Decide</bdi></a> "
                              "<code dir=\"auto\">asked = 1</code><div>if <bdi>Open</bdi> "
                              "<code dir=\"auto\">hour &gt; 8</code></div>"));
  for (const char* const told : {"F-12", "2 days", "Politely", "budget &gt; 0", "Ask who it is",
                                 "Second floor", "Handbook"}) {
    EXPECT_THAT(page, HasSubstr(told));
  }
  EXPECT_THAT(page, HasSubstr("<code dir=\"auto\">Money &gt; &quot;5&quot;</code>"));
  EXPECT_THAT(page, HasSubstr("<bdi>Faster &amp; cheaper</bdi>"));
  for (const char* id : {"chart", "steps", "roles", "containers", "files", "jumps", "revisions"}) {
    EXPECT_THAT(page, HasSubstr("<section id=\"" + std::string(id) + "\""));
  }
}

TEST(Page, LeavesOutEmptyTables) {
  const std::string page = WritePage(*Make<vnDocument>());
  EXPECT_THAT(page, Not(HasSubstr("<table")));
  EXPECT_THAT(page, HasSubstr("There are no steps."));
}

TEST(Page, EveryLinkLeadsToAPlaceInThePage) {
  const std::string page = WritePage(*MakeProcedure());
  const std::set<std::string> ids = Found(page, " id=\"([^\"]*)\"");
  const std::set<std::string> links = Found(page, " href=\"([^\"]*)\"");
  EXPECT_FALSE(links.empty());
  for (const std::string& link : links) {
    ASSERT_EQ(link[0], '#') << link;
    EXPECT_EQ(ids.count(link.substr(1)), 1u) << link;
  }
  EXPECT_TRUE(Found(page, "(src=|@import|url\\(h)").empty());
}

TEST(Page, EveryElementIsClosed) {
  const std::string page = WritePage(*MakeProcedure());
  std::vector<std::string> open;
  const std::regex tag("<(/?)([a-z][a-z0-9]*)(?:\\s[^>]*?)?(/?)>");
  const std::string body =
      page.substr(page.find("<body>"), page.find("<script>") - page.find("<body>"));
  for (std::sregex_iterator it(body.begin(), body.end(), tag), end; it != end; ++it) {
    if ((*it)[3] == "/") continue;
    if ((*it)[1] == "") {
      open.push_back((*it)[2]);
    } else {
      ASSERT_FALSE(open.empty());
      ASSERT_EQ(open.back(), (*it)[2]);
      open.pop_back();
    }
  }
  EXPECT_EQ(open, std::vector<std::string>{"body"});
}

}  // namespace
}  // namespace vndoc6::drawing
