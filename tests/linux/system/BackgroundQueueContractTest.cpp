#include <atomic>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "contracts/BackgroundQueueContract.h"
#include "fakes/FakeBackgroundQueue.h"
#include "hosts/linux/system/LinuxBackgroundQueue.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "linux/support/MainLoop.h"
#include "linux/support/ThreadShortage.h"

namespace navora {
namespace {

// Tests the contract of BackgroundQueue with the fake and the Linux implementation.
class FakeThread {
 public:
  BackgroundQueue& queue() { return *queue_; }
  void destroyQueue() { queue_.reset(); }
  void turn() { queue_->finishAll(); }

 private:
  std::unique_ptr<FakeBackgroundQueue> queue_ = std::make_unique<FakeBackgroundQueue>();
};

class RealThread {
 public:
  BackgroundQueue& queue() { return *queue_; }
  void destroyQueue() { queue_.reset(); }
  void turn() {}

 private:
  LinuxMainQueue mainQueue_;
  std::unique_ptr<LinuxBackgroundQueue> queue_ = std::make_unique<LinuxBackgroundQueue>(mainQueue_);
};

using BackgroundQueueImplementations = testing::Types<FakeThread, RealThread>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, BackgroundQueueContractTest, BackgroundQueueImplementations);
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, BackgroundThreadContractTest, RealThread);

class LinuxBackgroundQueueTest : public testing::Test {
 protected:
  LinuxMainQueue mainQueue_;
  std::unique_ptr<LinuxBackgroundQueue> queue_ = std::make_unique<LinuxBackgroundQueue>(mainQueue_);
};

class ThreadShortageTest : public LinuxBackgroundQueueTest {
 protected:
  // GLib's pools need a thread of their own from the first use on.
  void SetUp() override {
    bool completed = false;
    queue_->run([] {}, [&] { completed = true; });
    ASSERT_TRUE(waitUntil([&] { return completed; }));
    // Another queue: that one keeps its thread for a while.
    queue_ = std::make_unique<LinuxBackgroundQueue>(mainQueue_);
    shortage_.emplace();
  }
  void append(char letter) {
    queue_->run([this, letter] { worked_ += letter; }, [this, letter] { completed_ += letter; });
  }

  std::optional<ThreadShortage> shortage_;
  std::string worked_;
  std::string completed_;
};

TEST_F(ThreadShortageTest, TheMainThreadDoesTheWorkLaterAndInOrder) {
  std::thread::id thread;
  append('a');
  queue_->run([&] { thread = std::this_thread::get_id(); }, [this] { completed_ += 'b'; });
  append('c');
  EXPECT_GT(shortage_->refused(), 0);
  EXPECT_EQ(worked_, "");
  ASSERT_TRUE(waitUntil([&] { return completed_ == "abc"; })) << completed_;
  EXPECT_EQ(worked_, "ac");
  EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_F(ThreadShortageTest, AThreadTakesOverWhenThereIsOneAgain) {
  append('a');
  append('b');
  shortage_.reset();
  append('c');
  ASSERT_TRUE(waitUntil([&] { return completed_ == "abc"; })) << completed_;
  EXPECT_EQ(worked_, "abc");
}

TEST_F(ThreadShortageTest, DrainingDoesAllWork) {
  append('a');
  append('b');
  queue_->drain();
  EXPECT_EQ(worked_, "ab");
  EXPECT_EQ(completed_, "");
  EXPECT_TRUE(waitUntil([&] { return completed_ == "ab"; })) << completed_;
}

TEST_F(ThreadShortageTest, DestroyingTheQueueDropsTheWork) {
  append('a');
  queue_.reset();
  runPendingEvents();
  EXPECT_EQ(worked_, "");
  EXPECT_EQ(completed_, "");
}

}  // namespace
}  // namespace navora
