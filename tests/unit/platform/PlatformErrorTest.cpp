#include <gtest/gtest.h>

#include "platform/PlatformError.h"

namespace navora {
namespace {

// The platform's own numbers, which every host has to translate its errors into.
TEST(PlatformError, HasThePlatformsCodesForTheTwoFailuresThatRulesDependOn) {
  EXPECT_EQ(PlatformError::cancelledCode, -999);
  EXPECT_EQ(PlatformError::timedOutCode, -1001);
}

}  // namespace
}  // namespace navora
