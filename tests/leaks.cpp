// A test that leaves an object behind fails, whatever it is about.
#include <gtest/gtest.h>

#include "vndoc6/automation/object.h"

namespace vndoc6 {
namespace {

class LeakCheck : public ::testing::EmptyTestEventListener {
 public:
  void OnTestStart(const ::testing::TestInfo&) override {
    before_ = automation::Object::LiveCount();
  }
  void OnTestEnd(const ::testing::TestInfo&) override {
    EXPECT_EQ(automation::Object::LiveCount(), before_) << "objects are left behind";
  }

 private:
  size_t before_ = 0;
};

[[maybe_unused]] const bool kChecked = [] {
  ::testing::UnitTest::GetInstance()->listeners().Append(new LeakCheck);
  return true;
}();

}  // namespace
}  // namespace vndoc6
