// The commands render and report, run as from a shell.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "command.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/process/steps.h"

namespace vndoc {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

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
  EXPECT_EQ(RunWith({"report", file_.c_str(), "-o", target_.c_str()}), kDone);
  EXPECT_THAT(Bytes(target_), StartsWith("<!DOCTYPE html>"));
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

TEST_F(RenderTest, WhatCannotBeReadLeavesTheTargetAlone) {
  std::ofstream(target_) << "as it was";
  EXPECT_EQ(RunWith({"render", (folder_ + "/none").c_str(), "-o", target_.c_str()}), kFailed);
  EXPECT_EQ(Bytes(target_), "as it was");
}

}  // namespace
}  // namespace vndoc
