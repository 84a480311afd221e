#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "fakes/FakeMainQueue.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "linux/support/MainLoop.h"

namespace navora {
namespace {

using std::chrono::milliseconds;

// Tests the contract of MainQueue with the fake and the Linux implementation.
class ByHand {
 public:
  MainQueue& queue() { return queue_; }
  void letTimePass() { queue_.advance(milliseconds(1)); }

 private:
  FakeMainQueue queue_;
};

class InMainLoop {
 public:
  MainQueue& queue() { return queue_; }
  // The real clock runs by itself.
  void letTimePass() {}

 private:
  LinuxMainQueue queue_;
};

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

using MainQueueImplementations = testing::Types<ByHand, InMainLoop>;
TYPED_TEST_SUITE(MainQueueContractTest, MainQueueImplementations);

TYPED_TEST(MainQueueContractTest, RunsWorkAsynchronouslyInOrder) {
  std::string order;
  this->queue().async([&] { order += "1"; });
  this->queue().async([&] { order += "2"; });
  EXPECT_EQ(order, "");
  EXPECT_TRUE(this->comesTrue([&] { return order == "12"; }));
}

TYPED_TEST(MainQueueContractTest, RunsAddedWorkAfterWorkThatIsAlreadyQueued) {
  std::string order;
  this->queue().async([&] {
    this->queue().async([&] { order += "3"; });
    order += "1";
  });
  this->queue().async([&] { order += "2"; });
  EXPECT_TRUE(this->comesTrue([&] { return order == "123"; }));
}

TYPED_TEST(MainQueueContractTest, RunsWorkFromOtherThreadsOnTheMainThread) {
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

TYPED_TEST(MainQueueContractTest, RunsTimersAsynchronouslyEvenWithoutADelay) {
  bool ran = false;
  const auto token = this->queue().after(milliseconds(0), [&] { ran = true; });
  EXPECT_FALSE(ran);
  EXPECT_TRUE(this->comesTrue([&] { return ran; }));
}

TYPED_TEST(MainQueueContractTest, RunsTimersOnceInOrderOfTheirTime) {
  std::string order;
  const auto late = this->queue().after(milliseconds(40), [&] { order += "late"; });
  const auto early = this->queue().after(milliseconds(1), [&] { order += "early "; });
  EXPECT_TRUE(this->comesTrue([&] { return order == "early late"; }));
}

TYPED_TEST(MainQueueContractTest, DoesNotRunTimersWhoseTokenIsDestroyed) {
  bool ran = false;
  bool later = false;
  this->queue().after(milliseconds(1), [&] { ran = true; }).reset();
  const auto token = this->queue().after(milliseconds(20), [&] { later = true; });
  EXPECT_TRUE(this->comesTrue([&] { return later; }));
  EXPECT_FALSE(ran);
}

TYPED_TEST(MainQueueContractTest, WorkMayDestroyTheTokenOfAnotherTimer) {
  bool ran = false;
  bool later = false;
  auto other = this->queue().after(milliseconds(20), [&] { ran = true; });
  const auto token = this->queue().after(milliseconds(1), [&] { other.reset(); });
  const auto last = this->queue().after(milliseconds(40), [&] { later = true; });
  EXPECT_TRUE(this->comesTrue([&] { return later; }));
  EXPECT_FALSE(ran);
}

TYPED_TEST(MainQueueContractTest, WorkMayDestroyItsOwnToken) {
  std::unique_ptr<ObserverToken> token;
  std::string seen;
  const std::string captured = "what was captured lasts";
  token = this->queue().after(milliseconds(1), [&, captured] {
    token.reset();
    seen = captured;
  });
  EXPECT_TRUE(this->comesTrue([&] { return seen == captured; }));
}

TYPED_TEST(MainQueueContractTest, WorkMayReplaceItsOwnTokenWithTheNextTimer) {
  std::unique_ptr<ObserverToken> token;
  int count = 0;
  const std::function<void()> tick = [&] {
    if (++count < 3) token = this->queue().after(milliseconds(1), tick);
  };
  token = this->queue().after(milliseconds(1), tick);
  EXPECT_TRUE(this->comesTrue([&] { return count == 3; }));
}

}  // namespace
}  // namespace navora
