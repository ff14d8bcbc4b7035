#include "page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>

#include "addresses.h"
#include "model.h"
#include "page_texts.h"
#include "sha256.h"

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
  const auto task = ask->NewTask();
  task->SetName(u"Write it down");
  task->SetTaskType(7);
  ask->GetProperties()->Add(u"Shelf", Variant(int32_t{4}));
  const auto decide = document->NewStep();
  decide->SetLabel(u"Decide");
  decide->NewCondition(u"Rich", u"Money > \"5\"");
  const auto file = Make<vnFile>();
  file->SetFileName(u"javascript:alert(1)");
  decide->Files()->Add(file.get());
  const auto jump = Make<vnJump>();
  jump->SetDisplayName(u"\u05d0\u05d1");
  jump->SetFileName(u"supplier.vn6");
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
  const auto lost = Make<vnLink>();
  lost->SetText(u"lost");
  document->Links()->Add(lost.get());
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
  EXPECT_THAT(page, HasSubstr("<dt>Performed by</dt><dd>Anyone</dd>"));
  EXPECT_THAT(page, HasSubstr("<li>Write it down<div><code dir=\"auto\">TaskType</code> 7</div>"));
  EXPECT_THAT(page, HasSubstr("then: <a href=\"#step-2\">2. Decide</a>"
                              "<div>if <code dir=\"auto\">asked = 1</code></div><div>if Open "
                              "<code dir=\"auto\">hour &gt; 8</code></div>"));
  for (const char* const told :
       {"F-12", "2 days", "Politely", "budget &gt; 0", "Ask who it is", "Second floor", "Handbook",
        "Faster &amp; cheaper", "Money &gt; &quot;5&quot;",
        "<code dir=\"auto\">Properties/Shelf</code> 4", "<bdi>\u05d0\u05d1</bdi>", "<td>R</td>"}) {
    EXPECT_THAT(page, HasSubstr(told));
  }
  EXPECT_THAT(page, Not(HasSubstr("<dt>Revision</dt>"))) << "there is none";
  for (const char* id :
       {"chart", "steps", "roles", "raci", "containers", "files", "jumps", "loose", "revisions"}) {
    EXPECT_THAT(page, HasSubstr("<section id=\"" + std::string(id) + "\""));
  }
}

TEST(Page, LeavesOutEmptyTables) {
  const std::string page = WritePage(*Make<vnDocument>());
  EXPECT_THAT(page, Not(HasSubstr("<table")));
  EXPECT_THAT(page, HasSubstr("There are no steps."));
}

TEST(Page, EveryLinkLeadsToAPlaceInThePageOrToAFile) {
  HtmlOptions options;
  options.folder = u"../plans";
  options.index = u"index.html";
  options.report_of = [](const Text& name) {
    return name == u"supplier.vn6" ? Text(u"supplier & co.html") : Text();
  };
  const std::string page = WritePage(*MakeProcedure(), options);
  const std::set<std::string> ids = Found(page, " id=\"([^\"]*)\"");
  std::set<std::string> others;
  for (const std::string& link : Found(page, " href=\"([^\"]*)\"")) {
    if (link[0] != '#') {
      others.insert(link);
    } else {
      EXPECT_EQ(ids.count(link.substr(1)), 1u) << link;
    }
  }
  EXPECT_EQ(others, (std::set<std::string>{"../plans/javascript%3Aalert%281%29", "index.html",
                                           "supplier%20%26%20co.html"}));
  EXPECT_TRUE(Found(page, "(src=|@import|url\\(h|unsafe)").empty());
}

TEST(Page, AddressesAreOfFilesUnlessTheyAreOfTheWeb) {
  for (const auto& [name, address] : std::vector<std::pair<Text, std::string>>{
           {u"a b\\c#1.doc", "dir/a%20b/c%231.doc"},
           {u"C:\\Ünder\\x.doc", "file:///C:/%C3%9Cnder/x.doc"},
           {u"\\\\server\\share\\x", "file://server/share/x"},
           {u"/etc/x", "file:///etc/x"},
           {u"HTTPS://example.com/?a=1&b", "HTTPS://example.com/?a=1%26b"},
           {u"data:text/html,x", "dir/data%3Atext/html%2Cx"}}) {
    EXPECT_EQ(AddressOf(name, u"dir"), address);
  }
}

TEST(Page, SpeaksThreeLanguages) {
  const auto document = MakeProcedure();
  std::set<std::string> steps;
  for (const Language language : {Language::kEnglish, Language::kGerman, Language::kFrench}) {
    const std::string page = WritePage(*document, {language, {}, {}, {}});
    EXPECT_THAT(page, HasSubstr(std::string("<html lang=\"") + Words(language).Code() + "\">"));
    for (const std::string& heading : Found(page, "<h2 id=\"steps-heading\">([^<]*)</h2>")) {
      steps.insert(heading);
    }
    for (size_t i = 0; i < static_cast<size_t>(Word::kCount); ++i) {
      EXPECT_STRNE(Words(language)(static_cast<Word>(i)), "");
    }
  }
  EXPECT_EQ(steps, (std::set<std::string>{"Schritte", "Steps", "\u00c9tapes"}));
}

// The examples of FIPS 180-4's authors, and the lengths at which padding takes another block.
TEST(Sha256, GivesThePublishedDigests) {
  for (const auto& [text, digest] : std::vector<std::pair<std::string, std::string>>{
           {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
           {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
           {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
           {std::string(1000000, 'a'),
            "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"}}) {
    std::string hex;
    for (const uint8_t byte : Sha256(text)) {
      constexpr char kDigits[] = "0123456789abcdef";
      hex += {kDigits[byte >> 4], kDigits[byte & 15]};
    }
    EXPECT_EQ(hex, digest);
  }
}

TEST(Site, TellsOfItsReportsAndWhoJumpsToWhom) {
  const auto procedure = MakeProcedure();
  const auto other = Make<vnDocument>();
  other->Details()->SetTitle(u"Suppliers </script>");
  const auto report_of = [](const Text& name) {
    return name == u"supplier.vn6" ? Text(u"b.html") : Text();
  };
  const std::string index = SiteIndex({ReadSiteEntry(*procedure, u"a.html", report_of),
                                       ReadSiteEntry(*other, u"b.html", report_of)});
  EXPECT_THAT(index, HasSubstr("Suppliers \\u003c/script>\",\"\"]]</script>"));
  EXPECT_THAT(index, HasSubstr("\"Write it down\",\"step-1\""));
  EXPECT_THAT(index, HasSubstr("<a class=\"step\" href=\"b.html\" id=\"figure-2\">"));
  EXPECT_THAT(index, HasSubstr("<td><ul><li><a href=\"a.html\">Purchase"));
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
