// The commands render and report, run as from a shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "command.h"
#include "objects.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/automation/late_bound.h"
#include "vndoc6/bag/properties.h"
#include "vndoc6/chart/figure.h"
#include "vndoc6/details/details.h"
#include "vndoc6/process/condition.h"
#include "vndoc6/process/container.h"
#include "vndoc6/process/file.h"
#include "vndoc6/process/jump.h"
#include "vndoc6/process/link.h"
#include "vndoc6/process/steps.h"
#include "vndoc6/process/task.h"

namespace vndoc {
namespace {

using testing::HasSubstr;
using testing::StartsWith;
using vndoc6::automation::FromUtf8;
using vndoc6::automation::Make;

// Puts a text or number of its own into each property that takes one, but for those that join
// objects or order them. Gives what was put.
std::vector<std::string> FillIn(Object& object) {
  static int32_t number = 70000;
  std::vector<std::string> put;
  for (const MemberInfo& member : object.GetClassInfo()->members()) {
    using vndoc6::automation::CallKind, vndoc6::automation::TypeKind;
    if (member.kind != CallKind::kPut || member.parameters.size() != 1) continue;
    const std::string name = member.name;
    if (name.ends_with("Key") || name.ends_with("Index") || name == "TaskOrder") continue;
    const TypeKind type = member.parameters[0].type.kind;
    if (type == TypeKind::kText) {
      put.push_back(std::string(object.GetClassInfo()->name()) + "." + name);
      vndoc6::automation::Put(object, FromUtf8(name), {Variant(FromUtf8(put.back()))});
    } else if (type == TypeKind::kLong || type == TypeKind::kSingle) {
      put.push_back(std::to_string(++number));
      vndoc6::automation::Put(object, FromUtf8(name), {Variant(number)});
    }
  }
  return put;
}

class RenderTest : public testing::Test {
 protected:
  RenderTest() {
    std::filesystem::create_directories(folder_);
    const auto document = vndoc6::automation::Make<vnDocument>();
    document->NewStep()->SetLabel(u"Ask");
    document->SaveAs(vndoc6::automation::FromUtf8(file_));
  }

  int RunWith(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "vndoc");
    out_.str("");
    err_.str("");
    Context context{in_, out_, err_, false, {}, {}};
    return vndoc::Run(static_cast<int>(arguments.size()), arguments.data(), context);
  }

  static std::string Bytes(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  // With a search path that has nothing but this folder.
  int RenderPng() {
    const char* const path = std::getenv("PATH");
    const std::string kept = path != nullptr ? path : "";
    setenv("PATH", folder_.c_str(), 1);
    const int status = RunWith({"render", file_.c_str(), "-o", picture_.c_str()});
    setenv("PATH", kept.c_str(), 1);
    return status;
  }
  void MakeConverter(const std::string& script) {
    const std::string program = folder_ + "/rsvg-convert";
    std::ofstream(program) << "#!/bin/sh\n" << script << '\n';
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
  }

  const vndoc6::testing::TemporaryFolder own_folder_;
  std::string folder_ = (own_folder_.path() / "vndoc $(exit) \"render'").string();
  std::string file_ = folder_ + "/document.vn6";
  std::string target_ = folder_ + "/target";
  std::string picture_ = folder_ + "/target.png";
  std::istringstream in_;
  std::ostringstream out_, err_;
};

TEST_F(RenderTest, WritesAPictureAndAPage) {
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", target_.c_str()}), kDone);
  EXPECT_THAT(Bytes(target_), StartsWith("<?xml"));
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", "-"}), kDone);
  EXPECT_EQ(out_.str(), Bytes(target_)) << "the same each time";
  // Another kind of file.
  EXPECT_EQ(RunWith({"report", file_.c_str(), "-o", target_.c_str()}), kFailed);
  EXPECT_THAT(Bytes(target_), StartsWith("<?xml"));
  EXPECT_EQ(RunWith({"report", file_.c_str(), "-o", target_.c_str(), "--force"}), kDone);
  EXPECT_THAT(Bytes(target_), StartsWith("<!DOCTYPE html>"));
}

TEST_F(RenderTest, ShowAndReportTellEverythingOfTheProcess) {
  const auto document = Make<vnDocument>();
  const auto step = document->NewStep();
  const auto other = document->NewStep();
  const auto link = Make<vndoc6::vnLink>();
  link->SetOriginStepKey(step->Key());
  link->SetDestinationStepKey(other->Key());
  document->Links()->Add(link.get());
  const auto lost = Make<vndoc6::vnLink>();
  document->Links()->Add(lost.get());
  step->NewCondition(u"", u"");
  link->NewCondition(u"", u"");
  const auto container = Make<vndoc6::vnContainer>();
  Object& containers = *document->Containers().ToObject();
  static_cast<vndoc6::vnContainers&>(containers).Add(container.get());
  const auto file = Make<vndoc6::vnFile>();
  step->Files()->Add(file.get());
  const auto jump = Make<vndoc6::vnJump>();
  step->Jumps()->Add(jump.get());
  const Ref<vndoc6::vnTask> task = step->NewTask();
  std::vector<std::string> put = {"Audit", "yearly", "Cook", "Boss", "AutoComplete"};
  document->GetProperties()->Add(u"Audit", Variant(u"yearly"));
  step->PerformedBy()->Add(Variant(u"Cook"));
  step->SetAutoComplete(true);
  for (Object* const object : std::initializer_list<Object*>{
           document->Details().get(), step.get(), task.get(), link.get(), container.get(),
           file.get(), jump.get(), step->Conditions()->Item(Variant(int32_t{1})).get(),
           link->Conditions()->Item(Variant(int32_t{1})).get()}) {
    const std::vector<std::string> more = FillIn(*object);
    put.insert(put.end(), more.begin(), more.end());
  }
  document->Details()->AuthorisedBy()->SetDisplayName(u"Boss");
  lost->SetConditionExpression(u"never");
  put.push_back("never");
  ASSERT_GT(put.size(), 50u);
  document->SaveAs(FromUtf8(file_));
  RunWith({"show", file_.c_str()});
  const std::string shown = out_.str();
  RunWith({"report", file_.c_str(), "-o", "-"});
  for (const std::string& what : put) {
    EXPECT_THAT(shown, HasSubstr(what));
    EXPECT_THAT(out_.str(), HasSubstr(what));
  }
}

TEST_F(RenderTest, ReportsOfDocumentsThatJumpToEachOtherPointAtEachOther) {
  const auto jump_to = [&](const std::string& name, const Text& target) {
    const auto document = Make<vnDocument>();
    document->Details()->SetTitle(FromUtf8(name));
    const auto jump = Make<vndoc6::vnJump>();
    jump->SetFileName(target);
    document->NewStep()->Jumps()->Add(jump.get());
    const std::string file = folder_ + "/" + name;
    document->SaveAs(FromUtf8(file));
    return file;
  };
  std::filesystem::create_directories(folder_ + "/other");
  const std::string buy = jump_to("buy.vn6", u"other/index.vn6");
  const std::string pay = jump_to("other/index.vn6", u"C:\\plans\\BUY.vn6");
  const std::string none = folder_ + "/none.vn6";
  const std::string site = folder_ + "/new/site/";
  EXPECT_EQ(RunWith({"report", buy.c_str(), none.c_str(), pay.c_str(), "-o", site.c_str(),
                     "--language", "de"}),
            kFailed)
      << "one is not there";
  EXPECT_THAT(err_.str(), HasSubstr("none.vn6: "));
  EXPECT_THAT(out_.str(), HasSubstr("Wrote 2 reports"));
  EXPECT_THAT(Bytes(site + "buy.html"), HasSubstr("<a href=\"index-2.html\"><code"));
  EXPECT_THAT(Bytes(site + "index-2.html"), HasSubstr("<a href=\"buy.html\"><code"));
  EXPECT_THAT(Bytes(site + "index.html"), HasSubstr("<html lang=\"de\">"));

  // One at a time: the second finds the first beside it.
  const std::string page = folder_ + "/index.html";
  RunWith({"report", pay.c_str(), "-o", page.c_str()});
  EXPECT_THAT(Bytes(page), HasSubstr("<a href=\"file:///C:/plans/BUY.vn6\">"));
  const std::string second = folder_ + "/BUY.html";
  RunWith({"report", buy.c_str(), "-o", second.c_str()});
  EXPECT_THAT(Bytes(second), HasSubstr("<a href=\"index.html\"><code"));
  std::ofstream(page) << "no report";
  RunWith({"report", buy.c_str(), "-o", second.c_str()});
  EXPECT_THAT(Bytes(second), HasSubstr("<a href=\"other/index.vn6\"><code"));

  EXPECT_EQ(RunWith({"report", buy.c_str(), pay.c_str(), "-o", page.c_str()}), kFailed);
  EXPECT_THAT(err_.str(), HasSubstr("several documents go into a folder"));
  EXPECT_EQ(RunWith({"report", buy.c_str(), "-o", page.c_str(), "--language", "xx"}), kFailed);
  EXPECT_THAT(err_.str(), HasSubstr("a language is en, de or fr"));
  EXPECT_EQ(Bytes(page), "no report");
}

TEST_F(RenderTest, ALaidOutDocumentIsDrawnAsBefore) {
  const std::string outline = folder_ + "/outline.txt";
  std::ofstream(outline) << "Ask\nFine? [Decision]\n  no -> Ask\n  yes -> Do\nDo\n  -> Fine?\n";
  ASSERT_EQ(RunWith({"new", file_.c_str(), "--force", "--from", outline.c_str()}), kDone)
      << err_.str();
  ASSERT_EQ(RunWith({"render", file_.c_str(), "-o", "-"}), kDone);
  const std::string before = out_.str();
  EXPECT_EQ(RunWith({"layout", file_.c_str()}), kDone) << err_.str();
  EXPECT_EQ(out_.str(), "Placed 3 steps, 4 links and 1 container.\n");
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", "-"}), kDone);
  EXPECT_EQ(out_.str(), before);
  EXPECT_EQ(RunWith({"layout", file_.c_str()}), kDone);
  EXPECT_EQ(out_.str(), "Every step has a place; nothing was moved.\n");
  EXPECT_EQ(RunWith({"layout", file_.c_str(), "--all"}), kDone);
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", "-"}), kDone);
  EXPECT_EQ(out_.str(), before);
}

TEST_F(RenderTest, AMissingConverterIsNamedAndNothingIsWritten) {
  EXPECT_EQ(RenderPng(), kFailed);
  EXPECT_THAT(err_.str(), HasSubstr("rsvg-convert is missing"));
  EXPECT_FALSE(std::filesystem::exists(picture_));
}

TEST_F(RenderTest, TheConverterGetsThePictureAndGivesTheFile) {
  MakeConverter("read first; printf '%s as \\211PNG, %s' \"$first\" \"$2\"");
  EXPECT_EQ(RenderPng(), kDone) << err_.str();
  EXPECT_EQ(Bytes(picture_), "<?xml version=\"1.0\" encoding=\"UTF-8\"?> as \211PNG, --format=png");
  MakeConverter("echo half; echo 'too large' >&2; exit 1");
  EXPECT_EQ(RenderPng(), kFailed);
  EXPECT_EQ(err_.str(), "vndoc: rsvg-convert can't convert this chart: too large\n");
  EXPECT_THAT(Bytes(picture_), StartsWith("<?xml")) << "as it was";
}

TEST_F(RenderTest, ThePictureIsOfTheKindThatItsNameSays) {
  const std::string other = folder_ + "/target.jpg";
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", other.c_str()}), kFailed);
  EXPECT_THAT(err_.str(), HasSubstr("target.jpg: a picture is .svg, .png or .pdf"));
  EXPECT_FALSE(std::filesystem::exists(other));
  const std::string svg = folder_ + "/target.SVG";
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", svg.c_str(), "--png"}), kFailed);
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", svg.c_str(), "--width", "640"}), kDone);
  EXPECT_THAT(Bytes(svg), HasSubstr(" width=\"640\" "));
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", svg.c_str(), "--scale", "0"}), kFailed);
}

TEST_F(RenderTest, ALargeChartIsAFileForEachSheet) {
  const auto document = vndoc6::automation::Make<vnDocument>();
  for (int i = 0; i < 20; ++i)
    document->NewStep()->Figure()->SetTop(1500.0F * static_cast<float>(i));
  document->SaveAs(vndoc6::automation::FromUtf8(file_));
  const std::string svg = folder_ + "/sheet.svg";
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", svg.c_str(), "--paper", "A4", "--legend",
                     "--lanes", "role", "--direction", "right", "--theme", "dark", "--title"}),
            kDone)
      << err_.str();
  EXPECT_TRUE(std::filesystem::exists(svg)) << "one sheet keeps its name";
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", svg.c_str(), "--paper", "a4"}), kDone);
  EXPECT_EQ(out_.str(), folder_ + "/sheet-1.svg\n" + folder_ + "/sheet-2.svg\n");
  EXPECT_THAT(Bytes(folder_ + "/sheet-2.svg"), HasSubstr("Sheet 2 of 2"));
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", "-", "--paper", "a4"}), kFailed);
  EXPECT_THAT(err_.str(), HasSubstr("takes 2 sheets: give a name"));
  EXPECT_EQ(RunWith({"render", file_.c_str(), "-o", svg.c_str(), "--paper", "a0"}), kFailed);
}

TEST_F(RenderTest, WhatCannotBeReadLeavesTheTargetAlone) {
  std::ofstream(target_) << "as it was";
  EXPECT_EQ(RunWith({"render", (folder_ + "/none").c_str(), "-o", target_.c_str()}), kFailed);
  EXPECT_EQ(Bytes(target_), "as it was");
}

}  // namespace
}  // namespace vndoc
