#include "hosts/macos/system/MacMainQueue.h"

#include <utility>

#import <Foundation/Foundation.h>

#include "support/Lifetime.h"

namespace navora {

namespace {

// A block cannot be removed from a dispatch queue, so one whose token was destroyed does nothing.
class DelayedWork final : public ObserverToken {
 public:
  DelayedWork(std::chrono::nanoseconds delay, std::function<void()> work) {
    const std::function<void()> guarded = lifetime_.guard(std::move(work));
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, delay.count()), dispatch_get_main_queue(), ^{
      guarded();
    });
  }

 private:
  Lifetime lifetime_;
};

}  // namespace

void MacMainQueue::async(std::function<void()> work) {
  dispatch_async(dispatch_get_main_queue(), ^{
    work();
  });
}

std::unique_ptr<ObserverToken> MacMainQueue::after(std::chrono::milliseconds delay,
                                                   std::function<void()> work) {
  return std::make_unique<DelayedWork>(delay, std::move(work));
}

}  // namespace navora
