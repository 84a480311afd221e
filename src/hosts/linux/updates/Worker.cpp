#include "hosts/linux/updates/Worker.h"

#include <utility>

#include "hosts/linux/system/LinuxMainQueue.h"

namespace navora {

Worker::Worker(Work work, Completion completion) {
  const Completion done = lifetime_.guard(std::move(completion));
  thread_ = std::thread([this, work = std::move(work), done] {
    auto result = work(cancelled_);
    LinuxMainQueue().async([done, result = std::move(result)] { done(result); });
  });
}

Worker::~Worker() {
  cancelled_ = true;
  thread_.join();
}

}  // namespace navora
