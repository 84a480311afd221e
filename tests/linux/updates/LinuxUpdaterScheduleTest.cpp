#include <chrono>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "fakes/FakeMainQueue.h"
#include "linux/updates/LinuxUpdaterTest.h"

namespace navora {
namespace {

using namespace std::chrono_literals;

// Tests when the updater checks on its own.
class LinuxUpdaterScheduleTest : public LinuxUpdaterTest {
 protected:
  static constexpr auto day = std::chrono::hours(24);

  void start() {
    make(clock_);
    started_ = 0;
    observation_ = updater_->observeSessionInProgress([this] {
      if (updater_->sessionInProgress()) ++started_;
    });
    EXPECT_EQ(updater_->startUpdater(), std::nullopt);
    clock_.runDue();
  }
  // Lets time pass while the computer is awake: only then do the timers advance with the clock.
  void pass(std::chrono::seconds time) {
    for (auto second = 0s; second < time; ++second) {
      system_.time += 1s;
      clock_.advance(1s);
    }
  }
  // Returns whether a check starts within `time`.
  bool checksWithin(std::chrono::seconds time) {
    const int before = started_;
    pass(time);
    return started_ != before;
  }
  testing::AssertionResult becomes(const std::function<bool()>& condition) {
    return waitUntil([&] {
      clock_.runDue();
      return condition();
    });
  }
  testing::AssertionResult sessionEnds() {
    return becomes([this] { return !updater_->sessionInProgress(); });
  }
  std::optional<Json> lastCheck() const { return defaults_.value("navora.updater.lastCheck"); }
  void setLastCheck(std::chrono::seconds before) {
    defaults_.setValue("navora.updater.lastCheck",
                       secondsSince1970(system_.time) - static_cast<double>(before.count()));
  }

  FakeMainQueue clock_;
  int started_ = 0;
  std::unique_ptr<ObserverToken> observation_;
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

TEST_F(LinuxUpdaterScheduleTest, ChecksADayAfterASessionThatStayedOpenForDays) {
  publish("1.1");
  userDriver_.waitsWhenFound = true;
  start();
  pass(5s);
  ASSERT_TRUE(becomes([this] { return userDriver_.answer != nullptr; }));
  EXPECT_FALSE(checksWithin(2 * day));
  userDriver_.answer(UserUpdateChoice::dismiss);
  ASSERT_TRUE(sessionEnds());
  // The version that was declined is not offered again at once.
  EXPECT_FALSE(checksWithin(day - 1s));
  EXPECT_TRUE(checksWithin(1s));
}

TEST_F(LinuxUpdaterScheduleTest, CountsACheckAlthoughItsOfferIsUnanswered) {
  publish("1.1");
  userDriver_.waitsWhenFound = true;
  start();
  pass(5s);
  ASSERT_TRUE(becomes([this] { return userDriver_.answer != nullptr; }));
  start();
  EXPECT_FALSE(checksWithin(day - 1s));
}

TEST_F(LinuxUpdaterScheduleTest, ChecksSoonAfterWakingIfADayHasPassed) {
  setLastCheck(0h);
  start();
  system_.time += 25h;
  system_.wake();
  EXPECT_TRUE(checksWithin(5s));
}

TEST_F(LinuxUpdaterScheduleTest, CountsTheTimeAsleep) {
  setLastCheck(0h);
  start();
  system_.time += 10h;
  system_.wake();
  EXPECT_FALSE(checksWithin(14h - 1s));
  EXPECT_TRUE(checksWithin(1s));
}

TEST_F(LinuxUpdaterScheduleTest, NoticesAChangeOfTheClockWithinAnHour) {
  for (const auto change : {25h, -1000h}) {
    setLastCheck(0h);
    start();
    system_.time += change;
    EXPECT_TRUE(checksWithin(1h)) << change.count();
  }
}

TEST_F(LinuxUpdaterScheduleTest, IgnoresASmallCorrectionOfTheClock) {
  setLastCheck(-10min);
  start();
  EXPECT_FALSE(checksWithin(day));
  EXPECT_TRUE(checksWithin(10min));
}

TEST_F(LinuxUpdaterScheduleTest, ChecksSoonIfTheStoredTimeIsDamaged) {
  constexpr double infinite = std::numeric_limits<double>::infinity();
  for (const Json& stored :
       {Json(1e300), Json(-1e300), Json(infinite), Json(-infinite),
        Json(std::numeric_limits<double>::quiet_NaN()), Json(secondsSince1970(system_.time) + 1e9),
        Json("yesterday"), Json(nullptr), Json::array({1})}) {
    defaults_.setValue("navora.updater.lastCheck", stored);
    start();
    EXPECT_FALSE(checksWithin(4s)) << stored;
    EXPECT_TRUE(checksWithin(1s)) << stored;
  }
}

TEST_F(LinuxUpdaterScheduleTest, ReplacesADamagedRolloutGroup) {
  for (const Json& stored : {Json(1e300), Json(-1), Json(7), Json("3"),
                             Json(std::numeric_limits<double>::quiet_NaN())}) {
    defaults_.setValue("navora.updater.rolloutGroup", stored);
    make(clock_);
    updater_->checkForUpdates();
    const auto group = defaults_.value("navora.updater.rolloutGroup");
    ASSERT_TRUE(group && group->is_number_integer()) << stored;
    EXPECT_GE(group->get<int>(), 0);
    EXPECT_LT(group->get<int>(), 7);
  }
}

TEST_F(LinuxUpdaterScheduleTest, RepeatsAFailedCheckEverLater) {
  start();
  EXPECT_TRUE(checksWithin(5s));
  ASSERT_TRUE(sessionEnds());
  EXPECT_EQ(lastCheck(), std::nullopt);
  for (const auto delay : {5min, 10min, 20min, 40min, 80min, 160min, 240min, 240min}) {
    EXPECT_FALSE(checksWithin(delay - 1s)) << delay.count();
    EXPECT_TRUE(checksWithin(1s)) << delay.count();
    ASSERT_TRUE(sessionEnds());
  }
  publish("1.0");
  EXPECT_TRUE(checksWithin(4h));
  ASSERT_TRUE(sessionEnds());
  EXPECT_EQ(lastCheck(), Json(secondsSince1970(system_.time)));
  EXPECT_FALSE(checksWithin(day - 1s));
  server_.serve("/appcast.xml", {.body = "no feed"});
  EXPECT_TRUE(checksWithin(1s));
  ASSERT_TRUE(sessionEnds());
  // The first delay again.
  EXPECT_TRUE(checksWithin(5min));
}

TEST_F(LinuxUpdaterScheduleTest, RepeatsACancelledCheck) {
  publish("1.0");
  start();
  updater_->checkForUpdates();
  userDriver_.cancel();
  ASSERT_TRUE(sessionEnds());
  EXPECT_EQ(lastCheck(), std::nullopt);
  EXPECT_FALSE(checksWithin(5min - 1s));
  EXPECT_TRUE(checksWithin(1s));
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
