#pragma once

#include <deque>
#include <functional>
#include <mutex>

namespace navora {

// The part of a BackgroundQueue that is the same everywhere: what is to be done and who waits for
// it. The host brings the one thread that works, and calls for the completions on the main thread.
class BackgroundJobs {
 public:
  using Step = std::function<void()>;

  // The rest happens on the main thread, the destruction included.
  void add(Step work, Step completion);
  // Calls the completion of the oldest work, which must have ended.
  void completeNext();
  // Forgets the work that has not begun.
  void dropWaiting();

  // On the thread that works: does the oldest work that waits and releases what it captured. False
  // if there is none.
  bool workOnNext();

 private:
  std::mutex mutex_;
  std::deque<Step> works_;  // guarded by the mutex
  // Of all work that was added, in its order.
  std::deque<Step> completions_;
};

}  // namespace navora
