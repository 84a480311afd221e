#include <chrono>
#include <memory>
#include <optional>
#include <random>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/FakeMainQueue.h"
#include "platform/MemoryUserDefaults.h"
#include "updates/UpdateReminderController.h"

namespace navora {
namespace {

using namespace std::chrono_literals;
using Pending = UpdateReminderPolicy::Pending;
using PolicyDelay = UpdateReminderPolicy::Delay;

// A clock and the requested timers, which the test fires explicitly, including cancelled ones: a
// system timer may fire although it has just been cancelled.
class UpdateReminderControllerTest : public testing::Test {
 protected:
  struct Timer {
    double delay;
    std::function<void()> fire;
    bool cancelled = false;
  };

  class Token final : public ObserverToken {
   public:
    explicit Token(std::shared_ptr<Timer> timer) : timer_(std::move(timer)) {}
    ~Token() override { timer_->cancelled = true; }
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;

   private:
    std::shared_ptr<Timer> timer_;
  };

  std::unique_ptr<UpdateReminderController> makeController() {
    return std::make_unique<UpdateReminderController>(
        policy, [this] { return canCheck; },
        [this] {
          ++checks;
          if (duringCheck) duringCheck();
        },
        [this](UpdateReminderController::Delay delay, std::function<void()> fire) {
          timers.push_back(std::make_shared<Timer>(Timer{delay.count(), std::move(fire)}));
          return std::make_unique<Token>(timers.back());
        });
  }

  std::vector<std::size_t> armed() const {
    std::vector<std::size_t> indices;
    for (std::size_t index = 0; index < timers.size(); ++index) {
      if (!timers[index]->cancelled) indices.push_back(index);
    }
    return indices;
  }
  Timer& armedTimer() const { return *timers.at(armed().at(0)); }
  // Advances the clock to the active timer and fires it.
  void fire() {
    now += UpdateReminderController::Delay(armedTimer().delay);
    armedTimer().fire();
  }
  void store(Date deadline) {
    defaults.setValue("navora.updateReminder.pending",
                      {{"version", "2.0"}, {"deadline", secondsSince1970(deadline)}});
  }

  MemoryUserDefaults defaults;
  Date now = dateFromSecondsSince1970(1800000000);
  UpdateReminderPolicy policy{defaults, [this] { return now; }, [] { return Calendar("UTC"); }};
  bool canCheck = true;
  int checks = 0;
  std::function<void()> duringCheck;
  std::vector<std::shared_ptr<Timer>> timers;
  std::unique_ptr<UpdateReminderController> controller = makeController();
};

TEST_F(UpdateReminderControllerTest, SetsNoTimerWithoutAPostponement) {
  controller->refresh();
  EXPECT_TRUE(timers.empty());
}

TEST_F(UpdateReminderControllerTest, SetsTheTimerToTheDeadline) {
  store(now + 3h);
  controller->refresh();
  ASSERT_EQ(armed().size(), 1u);
  EXPECT_EQ(armedTimer().delay, 10800);
}

TEST_F(UpdateReminderControllerTest, FiresAlmostAtOnceForAPassedDeadline) {
  for (const auto age : {3600s, 1s, 0s}) {
    store(now - age);
    controller->refresh();
    ASSERT_EQ(armed().size(), 1u);
    EXPECT_EQ(armedTimer().delay, 0.1);
  }
  store(now + 50ms);
  controller->refresh();
  EXPECT_EQ(armedTimer().delay, 0.1);
}

TEST_F(UpdateReminderControllerTest, CancelsTheTimerOfARemovedPostponement) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  policy.ignore("2.0");
  controller->refresh();
  EXPECT_TRUE(armed().empty());
  EXPECT_EQ(timers.size(), 1u);
}

TEST_F(UpdateReminderControllerTest, ResetsTheTimerWithEveryChangeOfTheReminder) {
  controller->postpone("2.0", PolicyDelay::hour);
  ASSERT_EQ(armed().size(), 1u);
  EXPECT_EQ(armedTimer().delay, 3600);
  controller->postpone("2.0", PolicyDelay::tomorrow);
  ASSERT_EQ(armed().size(), 1u);
  EXPECT_EQ(now + UpdateReminderController::Delay(armedTimer().delay),
            Calendar("UTC").startOfNextDay(now));

  controller->observeEligibleVersion("2.0");
  EXPECT_EQ(armed().size(), 1u);
  controller->observeEligibleVersion("3.0");
  EXPECT_EQ(armed().size(), 0u);

  controller->postpone("3.0", PolicyDelay::hour);
  controller->ignore("3.0");
  EXPECT_EQ(armed().size(), 0u);
  EXPECT_FALSE(controller->shouldOffer("3.0", false));
  EXPECT_TRUE(controller->shouldOffer("3.0", true));

  controller->postpone("3.0", PolicyDelay::hour);
  controller->beginInstallation("3.0");
  EXPECT_EQ(armed().size(), 0u);
  EXPECT_TRUE(controller->shouldOffer("3.0", false));
}

TEST_F(UpdateReminderControllerTest, ChecksOnceAtTheDeadline) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  fire();
  EXPECT_EQ(checks, 1);
  EXPECT_EQ(policy.pending(), std::nullopt);
  EXPECT_TRUE(armed().empty());
}

TEST_F(UpdateReminderControllerTest, RetriesEvery15SecondsWhileTheUpdaterIsBusy) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  canCheck = false;
  fire();
  for (int retry = 0; retry < 100; ++retry) {
    ASSERT_EQ(armed().size(), 1u);
    EXPECT_EQ(armedTimer().delay, 15);
    EXPECT_TRUE(policy.pending());
    fire();
  }
  EXPECT_EQ(checks, 0);
  canCheck = true;
  fire();
  EXPECT_EQ(checks, 1);
  EXPECT_EQ(policy.pending(), std::nullopt);
  EXPECT_TRUE(armed().empty());
}

TEST_F(UpdateReminderControllerTest, ReturnsToTheDeadlineWhenTheVersionIsPostponedDuringARetry) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  canCheck = false;
  fire();
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  ASSERT_EQ(armed().size(), 1u);
  EXPECT_EQ(armedTimer().delay, 3600);
}

TEST_F(UpdateReminderControllerTest, IgnoresATimerThatFiresAfterItWasReplaced) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  now += 30min;
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  EXPECT_EQ(armed(), std::vector<std::size_t>{1});
  now += 2h;
  timers[0]->fire();
  EXPECT_EQ(checks, 0);
  EXPECT_EQ(armed(), std::vector<std::size_t>{1});
  timers[1]->fire();
  EXPECT_EQ(checks, 1);
}

TEST_F(UpdateReminderControllerTest, SetsTheTimerAgainWhenItFiresEarly) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  now += 59min;
  armedTimer().fire();
  EXPECT_EQ(checks, 0);
  ASSERT_EQ(armed().size(), 1u);
  EXPECT_EQ(armedTimer().delay, 60);
}

TEST_F(UpdateReminderControllerTest, StopsIfThePostponementWasRemovedElsewhere) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  policy.clearPending("2.0");
  fire();
  EXPECT_EQ(checks, 0);
  EXPECT_TRUE(armed().empty());
}

TEST_F(UpdateReminderControllerTest, KeepsAPostponementMadeDuringTheCheck) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  duringCheck = [this] {
    policy.postpone("2.0", PolicyDelay::hour);
    controller->refresh();
  };
  fire();
  EXPECT_EQ(policy.pending(), (Pending{"2.0", now + 3600s}));
  ASSERT_EQ(armed().size(), 1u);
  EXPECT_EQ(armedTimer().delay, 3600);
}

TEST_F(UpdateReminderControllerTest, CancelsItsTimerWhenItIsDestroyed) {
  policy.postpone("2.0", PolicyDelay::hour);
  controller->refresh();
  controller.reset();
  EXPECT_TRUE(armed().empty());
  now += 2h;
  timers[0]->fire();
  EXPECT_EQ(checks, 0);
  EXPECT_TRUE(policy.pending());
}

// Performs random actions of the user, the updater and the clock.
class UpdateReminderControllerSequenceTest : public UpdateReminderControllerTest {
 protected:
  void step() {
    switch (random() % 7) {
      case 0:
        policy.postpone("2.0", random() % 2 == 0 ? PolicyDelay::hour : PolicyDelay::tomorrow);
        return controller->refresh();
      case 1:
        policy.ignore("2.0");
        return controller->refresh();
      case 2:
        return controller->refresh();
      case 3:
        canCheck = !canCheck;
        return;
      case 4:
        now += std::chrono::seconds(random() % 7200);
        return;
      case 5:
        return fireAnyTimer();
      default:
        return fireInTime();
    }
  }

  // Fires a cancelled timer, or the active one, possibly early.
  void fireAnyTimer() {
    if (timers.empty()) return;
    Timer& timer = *timers[random() % timers.size()];
    const bool mayCheck = !timer.cancelled && isDue() && canCheck;
    const int before = checks;
    timer.fire();
    EXPECT_EQ(checks - before, mayCheck ? 1 : 0);
  }

  void fireInTime() {
    if (armed().empty()) return;
    now += UpdateReminderController::Delay(armedTimer().delay);
    const bool mayCheck = isDue() && canCheck;
    const int before = checks;
    armedTimer().fire();
    EXPECT_EQ(checks - before, mayCheck ? 1 : 0);
    EXPECT_EQ(policy.pending().has_value(), !mayCheck);
  }

  bool isDue() const {
    const auto pending = policy.pending();
    return pending && pending->deadline <= now;
  }

  std::mt19937 random;
};

TEST_F(UpdateReminderControllerSequenceTest, HasATimerIfAndOnlyIfAVersionIsPostponed) {
  for (unsigned seed = 0; seed < 200; ++seed) {
    random.seed(seed);
    for (int count = 0; count < 100; ++count) {
      step();
      ASSERT_EQ(armed().size(), policy.pending() ? 1u : 0u) << seed << ", step " << count;
    }
    timers.clear();
    defaults = {};
    controller = makeController();
  }
  // Ensures that enough of the sequences lead to a check.
  EXPECT_GT(checks, 200);
}

TEST(UpdateReminderTimer, FiresOnceAfterItsDelay) {
  FakeMainQueue queue;
  int fired = 0;
  const auto schedule = UpdateReminderController::scheduleTimer(queue);
  const auto token = schedule(UpdateReminderController::Delay(0.1), [&] { ++fired; });
  queue.advance(99ms);
  EXPECT_EQ(fired, 0);
  queue.advance(1ms);
  EXPECT_EQ(fired, 1);
  queue.advance(1h);
  EXPECT_EQ(fired, 1);
}

TEST(UpdateReminderTimer, IsCancelledWithItsToken) {
  FakeMainQueue queue;
  auto token = UpdateReminderController::scheduleTimer(queue)(
      UpdateReminderController::Delay(10), [] { FAIL() << "A cancelled timer fired"; });
  token.reset();
  EXPECT_EQ(queue.pendingCount(), 0u);
  queue.advance(1h);
}

TEST(UpdateReminderTimer, RoundsUpAndHasALimit) {
  FakeMainQueue queue;
  std::vector<std::chrono::milliseconds> fired;
  const auto schedule = UpdateReminderController::scheduleTimer(queue);
  std::vector<std::unique_ptr<ObserverToken>> tokens;
  for (const double seconds : {-5.0, 0.0001, 1e300}) {
    tokens.push_back(schedule(UpdateReminderController::Delay(seconds),
                              [&] { fired.push_back(queue.elapsed()); }));
  }
  queue.advance(48h);
  EXPECT_THAT(fired, testing::ElementsAre(0ms, 1ms, std::chrono::milliseconds(10min)));
}

// A reminder whose timer counts only the time during which the computer is awake, as the main
// queues of the hosts do.
class UpdateReminderClockTest : public testing::Test {
 protected:
  // Lets time pass while the computer sleeps, or sets the clock.
  void moveClock(std::chrono::hours by) { launch += by; }

  FakeMainQueue queue;
  MemoryUserDefaults defaults;
  Date launch = dateFromSecondsSince1970(1800000000);
  UpdateReminderPolicy policy{defaults, [this] { return launch + queue.elapsed(); },
                              [] { return Calendar("UTC"); }};
  std::vector<std::chrono::milliseconds> checks;
  UpdateReminderController controller{policy, [] { return true; },
                                      [this] { checks.push_back(queue.elapsed()); },
                                      UpdateReminderController::scheduleTimer(queue)};
};

TEST_F(UpdateReminderClockTest, ReachesADeadlineBeyondTheLimitOfATimer) {
  defaults.setValue("navora.updateReminder.pending",
                    {{"version", "2.0"}, {"deadline", secondsSince1970(launch + 25h)}});
  controller.refresh();
  queue.advance(100h);
  EXPECT_THAT(checks, testing::ElementsAre(std::chrono::milliseconds(25h)));
}

TEST_F(UpdateReminderClockTest, ChecksSoonAfterTheDeadlinePassedDuringSleep) {
  controller.postpone("2.0", PolicyDelay::hour);
  moveClock(9h);
  queue.advance(10min);
  EXPECT_EQ(checks.size(), 1U);
}

TEST_F(UpdateReminderClockTest, ChecksAtOnceIfItIsRefreshedAfterSleep) {
  controller.postpone("2.0", PolicyDelay::hour);
  moveClock(9h);
  controller.refresh();
  queue.advance(100ms);
  EXPECT_EQ(checks.size(), 1U);
}

TEST_F(UpdateReminderClockTest, ChecksSoonAfterTheClockWasSetBackByMoreThanADay) {
  controller.postpone("2.0", PolicyDelay::hour);
  moveClock(-1000h);
  queue.advance(10min);
  EXPECT_EQ(checks.size(), 1U);
  EXPECT_EQ(policy.pending(), std::nullopt);
  queue.advance(48h);
  EXPECT_EQ(checks.size(), 1U);
}

TEST_F(UpdateReminderClockTest, WaitsForTheDeadlineIfTheClockWasSetBackByLess) {
  controller.postpone("2.0", PolicyDelay::hour);
  moveClock(-2h);
  queue.advance(3h - 1ms);
  EXPECT_TRUE(checks.empty());
  queue.advance(1ms);
  EXPECT_EQ(checks.size(), 1U);
}

TEST_F(UpdateReminderClockTest, ChecksAtOnceForADamagedDeadline) {
  defaults.setValue("navora.updateReminder.pending", {{"version", "2.0"}, {"deadline", 1e300}});
  controller.refresh();
  queue.advance(100ms);
  EXPECT_EQ(checks.size(), 1U);
}

}  // namespace
}  // namespace navora
