#include <cstdlib>

#include <gmock/gmock.h>

#include "hosts/linux/system/DebugLog.h"
#include "linux/support/EnvironmentVariable.h"

namespace navora {
namespace {

// GLib reads the domains once per process, so each case has one of its own.
class DebugLogDeathTest : public testing::Test {
 protected:
  void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  [[noreturn]] static void writeBothAreas() {
    debugLog(DebugArea::navigation, "Allowed https://navora.example/");
    debugLog(DebugArea::capture, "Sent");
    std::exit(0);
  }

  const EnvironmentVariable domains_{"G_MESSAGES_DEBUG", std::nullopt};
};

TEST_F(DebugLogDeathTest, WritesNothingUnlessAsked) {
  EXPECT_EXIT(writeBothAreas(), testing::ExitedWithCode(0), "^$");
}

TEST_F(DebugLogDeathTest, WritesTheAreasAskedForToStandardError) {
  EXPECT_EXIT(
      {
        enableDebugLog("navigation");
        writeBothAreas();
      },
      testing::ExitedWithCode(0),
      testing::AllOf(testing::HasSubstr("navora-navigation"),
                     testing::HasSubstr("Allowed https://navora.example/"),
                     testing::Not(testing::HasSubstr("Sent"))));
}

TEST_F(DebugLogDeathTest, KeepsTheDomainsThatGLibsOwnVariableNames) {
  EXPECT_EXIT(
      {
        const EnvironmentVariable inherited("G_MESSAGES_DEBUG", "navora-capture");
        enableDebugLog("navigation");
        writeBothAreas();
      },
      testing::ExitedWithCode(0),
      testing::AllOf(testing::HasSubstr("Allowed"), testing::HasSubstr("Sent")));
}

TEST_F(DebugLogDeathTest, ReportsNamesThatAreNoArea) {
  EXPECT_EXIT(
      {
        enableDebugLog("everything");
        writeBothAreas();
      },
      testing::ExitedWithCode(0), "^Navora: NAVORA_DEBUG names no area \"everything\"; [^\n]*\n$");
}

}  // namespace
}  // namespace navora
