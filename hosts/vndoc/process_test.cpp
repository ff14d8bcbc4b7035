#include "process.h"

#include <gtest/gtest.h>

namespace vndoc {
namespace {

TEST(RunProgram, GivesArgumentsAndInputAsTheyAre) {
  const std::vector<std::string> odd = {"two words", "$(touch /tmp/x)", "\"'`;&|*\\", "", "\n"};
  std::vector<std::string> arguments = {"-c", R"(cat; for word; do printf '<%s>' "$word"; done)",
                                        "sh"};
  arguments.insert(arguments.end(), odd.begin(), odd.end());
  const auto ended = RunProgram("sh", arguments, "input\n");
  ASSERT_TRUE(ended);
  EXPECT_EQ(ended->status, 0);
  EXPECT_EQ(ended->output, "input\n<two words><$(touch /tmp/x)><\"'`;&|*\\><><\n>");
}

TEST(RunProgram, TellsHowAProgramEnded) {
  const auto failed = RunProgram("sh", {"-c", "echo why >&2; exit 3"}, "");
  EXPECT_EQ(failed->status, 3);
  EXPECT_EQ(failed->errors, "why\n");
  EXPECT_EQ(RunProgram("sh", {"-c", "kill -9 $$"}, "")->status, 128 + 9);
  EXPECT_FALSE(RunProgram("there is no such program", {}, ""));
}

// More than a pipe holds, both ways.
TEST(RunProgram, TakesAndGivesMuch) {
  const std::string much(1 << 20, 'x');
  EXPECT_EQ(RunProgram("cat", {}, much)->output, much);
  EXPECT_EQ(RunProgram("true", {}, much)->output, "");
}

}  // namespace
}  // namespace vndoc
