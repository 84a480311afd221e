#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>

namespace navora {

// The portable part of a BackgroundQueue: pending work and its completions, in order. The host
// provides the worker thread and runs the completions on the main thread. workOnNext() is called on
// any thread; everything else, the destructor included, on the main thread.
class BackgroundJobs {
 public:
  using Step = std::function<void()>;

  // Appends `work`, and the `completion` to run once it has finished.
  void add(Step work, Step completion);
  // Runs the completion of the oldest work, which must have finished.
  void completeNext();
  // Discards the work that has not started.
  void dropWaiting();

  // Blocks until all work has finished and its captures are destroyed.
  void waitUntilFinished();

  // Waits for work that another thread is running, then runs the oldest pending work and destroys
  // its captures. Returns false if no work is pending.
  bool workOnNext();

 private:
  // Locked while work runs.
  std::mutex turn_;
  std::mutex mutex_;
  std::condition_variable finished_;
  std::deque<Step> works_;      // guarded by the mutex
  std::size_t unfinished_ = 0;  // guarded by the mutex: pending and running work
  // One for each work added, in the same order.
  std::deque<Step> completions_;
};

}  // namespace navora
