#include <gmock/gmock.h>

#include "contracts/MainLoop.h"
#include "contracts/SystemContract.h"
#include "frameworks/AppKit/AppKitState.h"
#include "frameworks/Foundation/FoundationState.h"
#include "hosts/macos/system/MacSystem.h"

namespace navora {
namespace {

class Mac {
 public:
  System& system() { return system_; }
  void changeTimeZone(const std::string& identifier) { doubles::changeTimeZone(identifier); }
  void wake() { doubles::wake(); }

 private:
  MacSystem system_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, SystemContractTest, Mac);

TEST(MacSystemTest, ReturnsThePreferredLanguagesInTheirOrder) {
  doubles::FoundationState::shared().preferredLanguages = {"ru-RU", "de-CH", "en"};
  EXPECT_THAT(MacSystem().preferredLanguages(), testing::ElementsAre("ru-RU", "de-CH", "en"));
}

TEST(MacSystemTest, ReadingTheTimeZoneIsNoChangeOfIt) {
  doubles::FoundationState::shared().resettingTimeZonePostsNotification = true;
  MacSystem system;
  int calls = 0;
  std::string seen;
  const auto token = system.observeTimeZoneChange([&] {
    // Fails instead of going on for ever.
    if (++calls < 10) seen = system.timeZoneIdentifier();
  });
  EXPECT_EQ(system.timeZoneIdentifier(), "Europe/Moscow");
  doubles::changeTimeZone("Asia/Tokyo");
  runPendingEvents();
  EXPECT_EQ(seen, "Asia/Tokyo");
  EXPECT_EQ(calls, 1);
}

TEST(MacSystemTest, ReadsTheEnvironment) {
  ::setenv("NAVORA_TEST_SET", "Größe", 1);
  EXPECT_EQ(MacSystem().environmentVariable("NAVORA_TEST_SET"), "Größe");
  ::unsetenv("NAVORA_TEST_SET");
  EXPECT_EQ(MacSystem().environmentVariable("NAVORA_TEST_SET"), std::nullopt);
}

TEST(MacSystemTest, WritesToTheSystemLog) {
  MacSystem().log("100 % of “it”");
  EXPECT_THAT(doubles::FoundationState::shared().logged, testing::ElementsAre("100 % of “it”"));
}

}  // namespace
}  // namespace navora
