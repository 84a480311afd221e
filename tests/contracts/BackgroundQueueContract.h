#pragma once

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "contracts/MainLoop.h"
#include "platform/BackgroundQueue.h"

namespace navora {

// Records the thread on which it is destroyed.
class Witness {
 public:
  explicit Witness(std::thread::id& thread) : thread_(thread) {}
  ~Witness() { thread_ = std::this_thread::get_id(); }
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;

 private:
  std::thread::id& thread_;
};

// The contract of BackgroundQueue, for the fake and for every host's implementation.
template <typename Implementation>
class BackgroundQueueContractTest : public testing::Test {
 protected:
  void run(std::function<void()> work, std::function<void()> completion) {
    implementation_.queue().run(std::move(work), std::move(completion));
  }
  testing::AssertionResult runUntil(const std::function<bool()>& condition) {
    return waitUntil([&] {
      implementation_.turn();
      return condition();
    });
  }

  const std::thread::id mainThread_ = std::this_thread::get_id();
  Implementation implementation_;
};

TYPED_TEST_SUITE_P(BackgroundQueueContractTest);

TYPED_TEST_P(BackgroundQueueContractTest, RunsWorkOnAnotherThreadAndCompletionsOnTheMainThread) {
  std::thread::id worked;
  std::thread::id completed;
  this->run([&] { worked = std::this_thread::get_id(); },
            [&] { completed = std::this_thread::get_id(); });
  EXPECT_EQ(completed, std::thread::id());
  ASSERT_TRUE(this->runUntil([&] { return completed != std::thread::id(); }));
  EXPECT_EQ(completed, this->mainThread_);
  EXPECT_NE(worked, std::thread::id());
  EXPECT_NE(worked, this->mainThread_);
}

TYPED_TEST_P(BackgroundQueueContractTest, RunsWorkOneAtATimeInOrder) {
  constexpr int count = 200;
  std::string expected;
  std::string worked;
  std::string completed;
  std::atomic<int> atOnce = 0;
  std::atomic<bool> alone = true;
  for (int number = 0; number < count; ++number) {
    const char letter = static_cast<char>('a' + number % 26);
    expected += letter;
    this->run(
        [&, letter] {
          if (++atOnce > 1) alone = false;
          worked += letter;
          --atOnce;
        },
        [&, letter] { completed += letter; });
  }
  ASSERT_TRUE(this->runUntil([&] { return completed.size() == count; }));
  EXPECT_EQ(completed, expected);
  EXPECT_EQ(worked, expected);
  EXPECT_TRUE(alone);
}

TYPED_TEST_P(BackgroundQueueContractTest, ACompletionMayAddMoreWork) {
  bool done = false;
  this->run([] {}, [&] { this->run([] {}, [&] { done = true; }); });
  EXPECT_TRUE(this->runUntil([&] { return done; }));
}

TYPED_TEST_P(BackgroundQueueContractTest, ReleasesWorkWhereItRanAndCompletionsOnTheMainThread) {
  std::thread::id worked;
  std::thread::id workReleased;
  std::thread::id workReleasedAtCompletion;
  std::thread::id completionReleased;
  this->run([&worked, witness = std::make_shared<Witness>(
                          workReleased)] { worked = std::this_thread::get_id(); },
            [&, witness = std::make_shared<Witness>(completionReleased)] {
              workReleasedAtCompletion = workReleased;
            });
  ASSERT_TRUE(this->runUntil([&] { return completionReleased != std::thread::id(); }));
  EXPECT_EQ(workReleasedAtCompletion, worked);
  EXPECT_EQ(completionReleased, this->mainThread_);
}

TYPED_TEST_P(BackgroundQueueContractTest, CallsNoCompletionAfterItsDestruction) {
  std::atomic<int> worked = 0;
  bool completed = false;
  std::thread::id completionReleased;
  for (int count = 0; count < 50; ++count) {
    this->run([&worked] { ++worked; },
              [&, witness = std::make_shared<Witness>(completionReleased)] { completed = true; });
  }
  this->implementation_.destroyQueue();
  EXPECT_EQ(completionReleased, this->mainThread_);
  const int workedBefore = worked;
  runPendingEvents();
  EXPECT_FALSE(completed);
  EXPECT_EQ(worked, workedBefore);
}

TYPED_TEST_P(BackgroundQueueContractTest, DrainingWaitsForAllWorkButCallsNoCompletion) {
  constexpr int count = 50;
  std::atomic<int> worked = 0;
  int completed = 0;
  for (int number = 0; number < count; ++number)
    this->run([&worked] { ++worked; }, [&completed] { ++completed; });
  this->implementation_.queue().drain();
  EXPECT_EQ(worked, count);
  EXPECT_EQ(completed, 0);
  this->implementation_.queue().drain();
  EXPECT_TRUE(this->runUntil([&] { return completed == count; }));
}

TYPED_TEST_P(BackgroundQueueContractTest, CanBeDestroyedUnused) {
  this->implementation_.destroyQueue();
}

REGISTER_TYPED_TEST_SUITE_P(BackgroundQueueContractTest,
                            RunsWorkOnAnotherThreadAndCompletionsOnTheMainThread,
                            RunsWorkOneAtATimeInOrder, ACompletionMayAddMoreWork,
                            ReleasesWorkWhereItRanAndCompletionsOnTheMainThread,
                            CallsNoCompletionAfterItsDestruction,
                            DrainingWaitsForAllWorkButCallsNoCompletion, CanBeDestroyedUnused);

// The part of the contract that work in parallel shows, which the fake's never is.
template <typename Implementation>
class BackgroundThreadContractTest : public testing::Test {
 protected:
  Implementation implementation_;
};

TYPED_TEST_SUITE_P(BackgroundThreadContractTest);

TYPED_TEST_P(BackgroundThreadContractTest, DestructorWaitsForRunningWorkAndDropsTheRest) {
  std::promise<void> begun;
  std::promise<void> mayEnd;
  std::atomic<bool> ended = false;
  std::atomic<bool> ranLater = false;
  bool completed = false;
  this->implementation_.queue().run(
      [&] {
        begun.set_value();
        mayEnd.get_future().wait();
        ended = true;
      },
      [&] { completed = true; });
  // Releasing the dropped work lets the first one return.
  const auto letEnd = [&](void*) { mayEnd.set_value(); };
  this->implementation_.queue().run(
      [&ranLater, kept = std::shared_ptr<void>(nullptr, letEnd)] { ranLater = true; }, [] {});
  begun.get_future().wait();
  this->implementation_.destroyQueue();
  EXPECT_TRUE(ended);
  EXPECT_FALSE(ranLater);
  runPendingEvents();
  EXPECT_FALSE(completed);
}

TYPED_TEST_P(BackgroundThreadContractTest, DropsACompletionThatIsDue) {
  std::promise<void> released;
  bool completed = false;
  bool completionReleased = false;
  const auto tell = [&](void*) { released.set_value(); };
  const auto note = [&](void*) { completionReleased = true; };
  this->implementation_.queue().run(
      [kept = std::shared_ptr<void>(nullptr, tell)] {},
      [&completed, kept = std::shared_ptr<void>(nullptr, note)] { completed = true; });
  released.get_future().wait();
  this->implementation_.destroyQueue();
  EXPECT_TRUE(completionReleased);
  runPendingEvents();
  EXPECT_FALSE(completed);
}

REGISTER_TYPED_TEST_SUITE_P(BackgroundThreadContractTest,
                            DestructorWaitsForRunningWorkAndDropsTheRest,
                            DropsACompletionThatIsDue);

}  // namespace navora
