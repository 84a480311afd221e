#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FatalError.h"

namespace navora {
namespace {

TEST(FatalErrorDeathTest, WritesMessageSourceAndLineAndAborts) {
  EXPECT_EXIT(fatalError("broken rule", "TimeZone", 5), testing::KilledBySignal(SIGABRT),
              "^Fatal error: broken rule \\(TimeZone:5\\)\n");
}

TEST(FatalErrorDeathTest, TrapsOnAPreconditionWithoutWritingALine) {
  EXPECT_DEATH(preconditionFailure(), testing::Not(testing::HasSubstr("Fatal error")));
}

}  // namespace
}  // namespace navora
