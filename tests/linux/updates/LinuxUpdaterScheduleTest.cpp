#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

#include "fakes/FakeMainQueue.h"
#include "linux/updates/LinuxUpdaterTest.h"

namespace navora {
namespace {

// Tests when the updater checks on its own.
class LinuxUpdaterScheduleTest : public LinuxUpdaterTest {
 protected:
  static constexpr auto day = std::chrono::hours(24);

  void start() {
    make(clock_);
    EXPECT_EQ(updater_->startUpdater(), std::nullopt);
    clock_.runDue();
  }
  // Returns whether a check starts within `time`.
  bool checksWithin(std::chrono::milliseconds time) {
    const auto before = defaults_.value("navora.updater.lastCheck");
    clock_.advance(time);
    return defaults_.value("navora.updater.lastCheck") != before;
  }
  void setLastCheck(std::chrono::seconds before) {
    defaults_.setValue("navora.updater.lastCheck",
                       secondsSince1970(system_.time) - static_cast<double>(before.count()));
  }

  FakeMainQueue clock_;
};

TEST_F(LinuxUpdaterScheduleTest, ChecksSoonAfterTheFirstStart) {
  start();
  EXPECT_FALSE(checksWithin(std::chrono::seconds(4)));
  EXPECT_TRUE(checksWithin(std::chrono::seconds(1)));
}

TEST_F(LinuxUpdaterScheduleTest, ChecksOnceADayAcrossStarts) {
  setLastCheck(std::chrono::hours(20));
  start();
  EXPECT_FALSE(checksWithin(std::chrono::hours(4) - std::chrono::seconds(1)));
  EXPECT_TRUE(checksWithin(std::chrono::seconds(1)));
}

TEST_F(LinuxUpdaterScheduleTest, WaitsADayAtMostAfterTheClockWasSetBack) {
  setLastCheck(-std::chrono::hours(1000));
  start();
  EXPECT_TRUE(checksWithin(day));
}

TEST_F(LinuxUpdaterScheduleTest, DoesNothingBetweenChecks) {
  setLastCheck(std::chrono::hours(0));
  start();
  EXPECT_EQ(clock_.pendingCount(), 1U);
}

TEST_F(LinuxUpdaterScheduleTest, DoesNotCheckWithoutAnInstallation) {
  std::filesystem::remove(installed() / Installation::recordName);
  start();
  EXPECT_EQ(clock_.pendingCount(), 0U);
}

TEST_F(LinuxUpdaterScheduleTest, RemovesLeftoversOfAnInterruptedUpdate) {
  writeFile(updateFolder() / "new/navora/bin/navora", "half of it");
  start();
  EXPECT_FALSE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterScheduleTest, KeepsTheFolderOfAnUpdateInProgress) {
  const auto other = UpdateFolder::claim(*Installation::at(installed()));
  ASSERT_TRUE(other);
  start();
  EXPECT_TRUE(std::filesystem::exists(updateFolder()));
}

TEST_F(LinuxUpdaterScheduleTest, KeepsTheUsersRolloutGroup) {
  setLastCheck(std::chrono::hours(0));
  start();
  updater_->checkForUpdates();
  const auto group = defaults_.value("navora.updater.rolloutGroup");
  ASSERT_TRUE(group);
  EXPECT_GE(group->get<int>(), 0);
  EXPECT_LT(group->get<int>(), 7);
  updater_.reset();
  make(clock_);
  updater_->checkForUpdates();
  EXPECT_EQ(defaults_.value("navora.updater.rolloutGroup"), group);
}

}  // namespace
}  // namespace navora
