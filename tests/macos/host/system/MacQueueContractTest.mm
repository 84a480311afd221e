#include <memory>

#include "contracts/BackgroundQueueContract.h"
#include "contracts/MainQueueContract.h"
#include "hosts/macos/system/MacBackgroundQueue.h"
#include "hosts/macos/system/MacMainQueue.h"

namespace navora {
namespace {

class MacMainLoop {
 public:
  MainQueue& queue() { return queue_; }
  // The real clock runs by itself.
  void letTimePass() {}

 private:
  MacMainQueue queue_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, MainQueueContractTest, MacMainLoop);

class MacThread {
 public:
  BackgroundQueue& queue() { return *queue_; }
  void destroyQueue() { queue_.reset(); }
  void turn() {}

 private:
  std::unique_ptr<MacBackgroundQueue> queue_ = std::make_unique<MacBackgroundQueue>();
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, BackgroundQueueContractTest, MacThread);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, BackgroundThreadContractTest, MacThread);

}  // namespace
}  // namespace navora
