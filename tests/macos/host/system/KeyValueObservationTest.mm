#include "hosts/macos/system/KeyValueObservation.h"

#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "contracts/MainLoop.h"

// Announces the changes of its one property.
@interface ObservedCounter : NSObject
@property(nonatomic, readonly) int count;
- (void)increment;
@end

@implementation ObservedCounter

- (void)increment {
  [self willChangeValueForKey:@"count"];
  ++_count;
  [self didChangeValueForKey:@"count"];
}

@end

namespace navora {
namespace {

class KeyValueObservationTest : public testing::Test {
 protected:
  ObservedCounter* counter_ = [[ObservedCounter alloc] init];
};

TEST_F(KeyValueObservationTest, CallsBackOnTheMainThreadAfterTheChange) {
  std::thread::id thread;
  int seen = 0;
  const auto token = observeKeyPath(counter_, @"count", [&] {
    thread = std::this_thread::get_id();
    seen = counter_.count;
  });
  std::thread([this] {
    @autoreleasepool {
      [counter_ increment];
    }
  }).join();
  EXPECT_EQ(seen, 0);
  ASSERT_TRUE(waitUntil([&] { return seen == 1; }));
  EXPECT_EQ(thread, std::this_thread::get_id());
}

TEST_F(KeyValueObservationTest, CallsBackForEveryChange) {
  int calls = 0;
  const auto token = observeKeyPath(counter_, @"count", [&] { ++calls; });
  [counter_ increment];
  [counter_ increment];
  runPendingEvents();
  EXPECT_EQ(calls, 2);
}

TEST_F(KeyValueObservationTest, DoesNotCallBackOnceTheTokenIsDestroyed) {
  int calls = 0;
  auto token = observeKeyPath(counter_, @"count", [&] { ++calls; });
  [counter_ increment];
  token.reset();
  [counter_ increment];
  runPendingEvents();
  EXPECT_EQ(calls, 0);
}

TEST_F(KeyValueObservationTest, TheCallbackMayDestroyTheToken) {
  const std::string marker(100, 'x');
  std::string seen;
  std::unique_ptr<ObserverToken> token;
  token = observeKeyPath(counter_, @"count", [&token, &seen, marker] {
    token.reset();
    seen = marker;
  });
  [counter_ increment];
  runPendingEvents();
  EXPECT_EQ(seen, marker);
}

TEST_F(KeyValueObservationTest, TheTokenKeepsTheObject) {
  auto token = observeKeyPath(counter_, @"count", [] {});
  ObservedCounter* __weak weak = counter_;
  counter_ = nil;
  EXPECT_NE(weak, nil);
  token.reset();
  EXPECT_EQ(weak, nil);
}

}  // namespace
}  // namespace navora
