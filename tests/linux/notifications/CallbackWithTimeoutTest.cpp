#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hosts/linux/notifications/CallbackWithTimeout.h"
#include "linux/support/MainLoop.h"

namespace navora {
namespace {

using Results = std::vector<std::string>;

class CallbackWithTimeoutTest : public testing::Test {
 protected:
  CallbackWithTimeout<std::string>::Pointer start(std::chrono::milliseconds timeout) {
    return CallbackWithTimeout<std::string>::start(
        timeout, [results = results_](std::string result) { results->push_back(result); },
        "timed out");
  }

  std::shared_ptr<Results> results_ = std::make_shared<Results>();
};

TEST_F(CallbackWithTimeoutTest, IsCalledWithTheFirstResultOnly) {
  const auto callback = start(std::chrono::hours(1));
  EXPECT_FALSE(callback->wasCalled());
  callback->call("first");
  EXPECT_TRUE(callback->wasCalled());
  callback->call("second");
  EXPECT_EQ(*results_, Results{"first"});
}

TEST_F(CallbackWithTimeoutTest, IsCalledWithTheDefaultWhenTheTimeIsUp) {
  const auto callback = start(std::chrono::milliseconds(1));
  EXPECT_TRUE(results_->empty());
  ASSERT_TRUE(waitUntil([&] { return callback->wasCalled(); }));
  callback->call("after that");
  EXPECT_EQ(*results_, Results{"timed out"});
}

TEST_F(CallbackWithTimeoutTest, IsCalledEvenIfNoPointerIsLeft) {
  start(std::chrono::milliseconds(1));
  EXPECT_TRUE(waitUntil([&] { return !results_->empty(); }));
}

TEST_F(CallbackWithTimeoutTest, DestroysTheCallbackOnceItWasCalled) {
  auto callback = start(std::chrono::hours(1));
  EXPECT_EQ(results_.use_count(), 2);
  callback->call("first");
  EXPECT_EQ(results_.use_count(), 1);
  const std::weak_ptr<CallbackWithTimeout<std::string>> watch = callback;
  callback.reset();
  EXPECT_TRUE(watch.expired());
}

TEST_F(CallbackWithTimeoutTest, TheCallbackMayDropTheLastPointer) {
  CallbackWithTimeout<int>::Pointer callback;
  int received = 0;
  callback = CallbackWithTimeout<int>::start(
      std::chrono::hours(1),
      [&](int value) {
        callback.reset();
        received = value;
      },
      0);
  callback->call(5);
  EXPECT_EQ(received, 5);
}

}  // namespace
}  // namespace navora
