#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "fakes/FakeMainQueue.h"
#include "linux/updates/LinuxUpdaterTest.h"

namespace navora {
namespace {

// When the updater looks by itself.
class LinuxUpdaterScheduleTest : public LinuxUpdaterTest {
 protected:
  static constexpr auto day = std::chrono::hours(24);

  void start() {
    make(clock);
    EXPECT_EQ(updater->startUpdater(), std::nullopt);
    clock.runDue();
  }
  // How many checks have begun.
  bool checksWithin(std::chrono::milliseconds time) {
    const auto before = defaults.value("navora.updater.lastCheck");
    clock.advance(time);
    return defaults.value("navora.updater.lastCheck") != before;
  }
  void setLastCheck(std::chrono::seconds before) {
    defaults.setValue("navora.updater.lastCheck",
                      secondsSince1970(system.time) - static_cast<double>(before.count()));
  }

  FakeMainQueue clock;
};

TEST_F(LinuxUpdaterScheduleTest, LooksSoonAfterItsFirstStart) {
  start();
  EXPECT_FALSE(checksWithin(std::chrono::seconds(4)));
  EXPECT_TRUE(checksWithin(std::chrono::seconds(1)));
}

TEST_F(LinuxUpdaterScheduleTest, LooksOnceADayAcrossStarts) {
  setLastCheck(std::chrono::hours(20));
  start();
  EXPECT_FALSE(checksWithin(std::chrono::hours(4) - std::chrono::seconds(1)));
  EXPECT_TRUE(checksWithin(std::chrono::seconds(1)));
}

TEST_F(LinuxUpdaterScheduleTest, WaitsADayAtMostWhenTheClockWasPutBack) {
  setLastCheck(-std::chrono::hours(1000));
  start();
  EXPECT_TRUE(checksWithin(day));
}

TEST_F(LinuxUpdaterScheduleTest, DoesNothingBetweenChecks) {
  setLastCheck(std::chrono::hours(0));
  start();
  EXPECT_EQ(clock.pendingCount(), 1U);
}

TEST_F(LinuxUpdaterScheduleTest, NeverLooksByItselfWhereSomebodyElseInstalls) {
  std::filesystem::remove(installed() / Installation::recordName);
  start();
  EXPECT_EQ(clock.pendingCount(), 0U);
}

TEST_F(LinuxUpdaterScheduleTest, RemovesWhatAnInterruptedUpdateHasLeft) {
  writeFile(updateFolder() / "new/navora/bin/navora", "half of it");
  start();
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterScheduleTest, LeavesAnUpdateAloneThatIsUnderWay) {
  const auto other = UpdateFolder::claim(*Installation::at(installed()));
  ASSERT_TRUE(other);
  start();
  EXPECT_TRUE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterScheduleTest, KeepsTheUsersPlaceInARollout) {
  setLastCheck(std::chrono::hours(0));
  start();
  updater->checkForUpdates();
  const auto group = defaults.value("navora.updater.rolloutGroup");
  ASSERT_TRUE(group);
  EXPECT_GE(group->get<int>(), 0);
  EXPECT_LT(group->get<int>(), 7);
  updater.reset();
  make(clock);
  updater->checkForUpdates();
  EXPECT_EQ(defaults.value("navora.updater.rolloutGroup"), group);
}

}  // namespace
}  // namespace navora
