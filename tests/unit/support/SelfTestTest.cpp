#include <gtest/gtest.h>

#include "support/SelfTest.h"

namespace navora {
namespace {

TEST(SelfTest, CountsTheChecksThatPass) {
  SelfTest test;
  test.check(true, "first");
  test.check(true, "second");
  EXPECT_EQ(test.count(), 2);
}

TEST(SelfTest, PrintsTheResultOnStandardOutput) {
  testing::internal::CaptureStdout();
  SelfTest::pass("policy (2 checks)");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "PASS: policy (2 checks)\n");
}

TEST(SelfTestDeathTest, NamesTheFirstFailingCheckAndExitsWithStatus1) {
  const auto run = [] {
    SelfTest test;
    test.check(true, "holds");
    test.check(false, "first failure");
    test.check(false, "second failure");
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(1), "^FAIL: first failure\n$");
}

}  // namespace
}  // namespace navora
