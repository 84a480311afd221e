#include <gtest/gtest.h>

#include "platform/PlatformError.h"

namespace navora {
namespace {

// Foundation's values, which every host translates its errors into.
TEST(PlatformError, HasTheCodesOfCancellationAndTimeout) {
  EXPECT_EQ(PlatformError::cancelledCode, -999);
  EXPECT_EQ(PlatformError::timedOutCode, -1001);
}

}  // namespace
}  // namespace navora
