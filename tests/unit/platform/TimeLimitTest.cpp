#include <functional>
#include <memory>
#include <optional>

#include <gtest/gtest.h>

#include "fakes/FakeMainQueue.h"
#include "platform/TimeLimit.h"

namespace navora {
namespace {

using std::chrono::seconds;

class TimeLimitTest : public testing::Test {
 protected:
  Task<std::optional<int>> wait() {
    return awaitWithin<int>(queue_, seconds(2),
                            [this](Callback<int> done) { answer_ = std::move(done); });
  }

  FakeMainQueue queue_;
  Callback<int> answer_;
};

TEST_F(TimeLimitTest, YieldsTheValueAndCancelsTheTimer) {
  const auto task = wait();
  answer_(7);
  EXPECT_EQ(task.result(), 7);
  EXPECT_EQ(queue_.pendingCount(), 0u);
}

TEST_F(TimeLimitTest, YieldsNothingAfterTheLimit) {
  const auto task = wait();
  queue_.advance(seconds(2) - std::chrono::milliseconds(1));
  EXPECT_FALSE(task.isFinished());
  queue_.advance(std::chrono::milliseconds(1));
  EXPECT_EQ(task.result(), std::nullopt);
  answer_(7);
  EXPECT_EQ(task.result(), std::nullopt);
}

TEST_F(TimeLimitTest, AcceptsAnImmediateAnswer) {
  const auto task = awaitWithin<int>(queue_, seconds(2), [](Callback<int> done) { done(1); });
  EXPECT_EQ(task.result(), 1);
}

TEST_F(TimeLimitTest, StillEndsIfTheCallbackIsDestroyedUncalled) {
  const auto task = awaitWithin<int>(queue_, seconds(2), [](Callback<int>) {});
  queue_.advance(seconds(2));
  EXPECT_EQ(task.result(), std::nullopt);
}

TEST_F(TimeLimitTest, CancelsTheTimerWithTheTask) {
  {
    const auto task = wait();
  }
  EXPECT_EQ(queue_.pendingCount(), 0u);
  answer_(7);
}

}  // namespace
}  // namespace navora
