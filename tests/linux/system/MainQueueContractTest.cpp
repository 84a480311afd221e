#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "contracts/MainQueueContract.h"
#include "fakes/FakeMainQueue.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "linux/support/MainLoop.h"

namespace navora {
namespace {

// Tests the contract of MainQueue with the fake and the Linux implementation.
class ByHand {
 public:
  MainQueue& queue() { return queue_; }
  void letTimePass() { queue_.advance(std::chrono::milliseconds(1)); }

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

using MainQueueImplementations = testing::Types<ByHand, InMainLoop>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, MainQueueContractTest, MainQueueImplementations);

}  // namespace
}  // namespace navora
