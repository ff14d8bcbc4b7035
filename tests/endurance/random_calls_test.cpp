// Calls that no host makes on purpose, in any order: nothing but the errors that hosts know comes
// of them, and nothing stays behind.
#include "tests/support/random_calls.h"

#include <gtest/gtest.h>

#include "tests/endurance/soak.h"
#include "tests/hostile_text.h"
#include "tests/support/temporary_folder.h"
#include "vndoc6/published/published.h"

namespace vndoc6 {
namespace {

TEST(RandomCalls, ReachEveryMemberAndLeaveNothingBehind) {
  const size_t before = automation::Object::LiveCount();
  const testing::TemporaryFolder folder;
  std::set<std::string> called;
  for (int32_t run = 0; run < testing::Times(100); ++run) {
    testing::Random random(testing::Seed() + static_cast<uint32_t>(run));
    std::vector<uint8_t> bytes(6000);
    for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
    {
      testing::RandomCalls calls(bytes, folder.Name(""));
      calls.Run();
      called.insert(calls.called().begin(), calls.called().end());
    }
    ASSERT_EQ(automation::Object::LiveCount(), before) << run;
  }
  for (const PublishedClass& published : PublishedClasses()) {
    for (const automation::MemberInfo& member : published.info().members()) {
      const std::string name = std::string(published.info().name()) + "." + member.name;
      EXPECT_EQ(called.count(name), 1U) << name;
    }
  }
}

}  // namespace
}  // namespace vndoc6
