#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "contracts/MainLoop.h"
#include "platform/MainQueue.h"

namespace navora {

// The contract of MainQueue, for the fake and for every host's implementation.
template <typename Implementation>
class MainQueueContractTest : public testing::Test {
 protected:
  MainQueue& queue() { return implementation_.queue(); }
  testing::AssertionResult comesTrue(const std::function<bool()>& condition) {
    return waitUntil([&] {
      if (!condition()) implementation_.letTimePass();
      return condition();
    });
  }

 private:
  Implementation implementation_;
};

TYPED_TEST_SUITE_P(MainQueueContractTest);

TYPED_TEST_P(MainQueueContractTest, RunsWorkAsynchronouslyInOrder) {
  std::string order;
  this->queue().async([&] { order += "1"; });
  this->queue().async([&] { order += "2"; });
  EXPECT_EQ(order, "");
  EXPECT_TRUE(this->comesTrue([&] { return order == "12"; }));
}

TYPED_TEST_P(MainQueueContractTest, RunsAddedWorkAfterWorkThatIsAlreadyQueued) {
  std::string order;
  this->queue().async([&] {
    this->queue().async([&] { order += "3"; });
    order += "1";
  });
  this->queue().async([&] { order += "2"; });
  EXPECT_TRUE(this->comesTrue([&] { return order == "123"; }));
}

TYPED_TEST_P(MainQueueContractTest, RunsWorkFromOtherThreadsOnTheMainThread) {
  constexpr int count = 100;
  int fromMain = 0;
  int fromOther = 0;
  bool onMainThreadInOrder = true;
  std::thread other([&, main = std::this_thread::get_id()] {
    for (int number = 0; number < count; ++number) {
      this->queue().async([&, main, number] {
        if (std::this_thread::get_id() != main || fromOther != number) onMainThreadInOrder = false;
        ++fromOther;
      });
    }
  });
  for (int number = 0; number < count; ++number)
    this->queue().async([&] { ++fromMain; });
  other.join();
  EXPECT_TRUE(this->comesTrue([&] { return fromMain + fromOther == 2 * count; }));
  EXPECT_TRUE(onMainThreadInOrder);
}

TYPED_TEST_P(MainQueueContractTest, RunsTimersAsynchronouslyEvenWithoutADelay) {
  bool ran = false;
  const auto token = this->queue().after(std::chrono::milliseconds(0), [&] { ran = true; });
  EXPECT_FALSE(ran);
  EXPECT_TRUE(this->comesTrue([&] { return ran; }));
}

TYPED_TEST_P(MainQueueContractTest, RunsTimersOnceInOrderOfTheirTime) {
  std::string order;
  const auto late = this->queue().after(std::chrono::milliseconds(40), [&] { order += "late"; });
  const auto early = this->queue().after(std::chrono::milliseconds(1), [&] { order += "early "; });
  EXPECT_TRUE(this->comesTrue([&] { return order == "early late"; }));
}

TYPED_TEST_P(MainQueueContractTest, DoesNotRunTimersWhoseTokenIsDestroyed) {
  bool ran = false;
  bool later = false;
  this->queue().after(std::chrono::milliseconds(1), [&] { ran = true; }).reset();
  const auto token = this->queue().after(std::chrono::milliseconds(20), [&] { later = true; });
  EXPECT_TRUE(this->comesTrue([&] { return later; }));
  EXPECT_FALSE(ran);
}

TYPED_TEST_P(MainQueueContractTest, WorkMayDestroyTheTokenOfAnotherTimer) {
  bool ran = false;
  bool later = false;
  auto other = this->queue().after(std::chrono::milliseconds(20), [&] { ran = true; });
  const auto token = this->queue().after(std::chrono::milliseconds(1), [&] { other.reset(); });
  const auto last = this->queue().after(std::chrono::milliseconds(40), [&] { later = true; });
  EXPECT_TRUE(this->comesTrue([&] { return later; }));
  EXPECT_FALSE(ran);
}

TYPED_TEST_P(MainQueueContractTest, WorkMayDestroyItsOwnToken) {
  std::unique_ptr<ObserverToken> token;
  std::string seen;
  const std::string captured = "what was captured lasts";
  token = this->queue().after(std::chrono::milliseconds(1), [&, captured] {
    token.reset();
    seen = captured;
  });
  EXPECT_TRUE(this->comesTrue([&] { return seen == captured; }));
}

TYPED_TEST_P(MainQueueContractTest, WorkMayReplaceItsOwnTokenWithTheNextTimer) {
  std::unique_ptr<ObserverToken> token;
  int count = 0;
  const std::function<void()> tick = [&] {
    if (++count < 3) token = this->queue().after(std::chrono::milliseconds(1), tick);
  };
  token = this->queue().after(std::chrono::milliseconds(1), tick);
  EXPECT_TRUE(this->comesTrue([&] { return count == 3; }));
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContractTest, RunsWorkAsynchronouslyInOrder,
                            RunsAddedWorkAfterWorkThatIsAlreadyQueued,
                            RunsWorkFromOtherThreadsOnTheMainThread,
                            RunsTimersAsynchronouslyEvenWithoutADelay,
                            RunsTimersOnceInOrderOfTheirTime, DoesNotRunTimersWhoseTokenIsDestroyed,
                            WorkMayDestroyTheTokenOfAnotherTimer, WorkMayDestroyItsOwnToken,
                            WorkMayReplaceItsOwnTokenWithTheNextTimer);

}  // namespace navora
