#include "hosts/macos/system/MacBackgroundQueue.h"

#include <utility>

namespace navora {

MacBackgroundQueue::MacBackgroundQueue()
    : queue_(dispatch_queue_create(
          "example.navora.Navora.background",
          dispatch_queue_attr_make_with_qos_class(DISPATCH_QUEUE_SERIAL, QOS_CLASS_UTILITY, 0))) {}

MacBackgroundQueue::~MacBackgroundQueue() {
  jobs_.dropWaiting();
  // Waits for the blocks in the queue, which refer to this object.
  dispatch_sync(queue_, ^{
                });
}

void MacBackgroundQueue::run(std::function<void()> work, std::function<void()> completion) {
  jobs_.add(std::move(work), std::move(completion));
  dispatch_async(queue_, ^{
    if (!jobs_.workOnNext()) return;
    const std::function<void()> completeNext = completeNext_;
    dispatch_async(dispatch_get_main_queue(), ^{
      completeNext();
    });
  });
}

}  // namespace navora
