#include "platform/BackgroundJobs.h"

#include <utility>

#include "support/FatalError.h"

namespace navora {

void BackgroundJobs::add(Step work, Step completion) {
  completions_.push_back(std::move(completion));
  const std::lock_guard lock(mutex_);
  works_.push_back(std::move(work));
  ++unfinished_;
}

void BackgroundJobs::completeNext() {
  if (completions_.empty())
    fatalError("No background work has finished", "BackgroundJobs", __LINE__);
  const Step completion = std::move(completions_.front());
  completions_.pop_front();
  completion();
}

void BackgroundJobs::dropWaiting() {
  std::deque<Step> dropped;
  const std::lock_guard lock(mutex_);
  // Destroyed after the lock is released, because destroying the captures may run any code.
  dropped.swap(works_);
  unfinished_ -= dropped.size();
}

void BackgroundJobs::waitUntilFinished() {
  std::unique_lock lock(mutex_);
  finished_.wait(lock, [this] { return unfinished_ == 0; });
}

bool BackgroundJobs::workOnNext() {
  const std::lock_guard turn(turn_);
  Step work;
  {
    const std::lock_guard lock(mutex_);
    if (works_.empty()) return false;
    work = std::move(works_.front());
    works_.pop_front();
  }
  work();
  work = nullptr;
  const std::lock_guard lock(mutex_);
  if (--unfinished_ == 0) finished_.notify_all();
  return true;
}

}  // namespace navora
