#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "support/CallbackAwaiter.h"

namespace navora {

// Runs work that would block the main thread for too long, in order, on one background thread: pure
// work on values, and reading and writing files that nothing else uses. While the system has no
// thread left, the main thread does the work, between its other events.
//
// Destroyed on the main thread: the destructor waits for running work to finish, discards work that
// has not started, and no further completion is called.
class BackgroundQueue {
 public:
  virtual ~BackgroundQueue() = default;

  // Called on the main thread. Runs `work` on the background thread, after all work passed in
  // earlier, and then `completion` on the main thread, never before run() returns.
  //
  // `work` may use only values that it owns, immutable data, MainQueue::async() and a PrivateFile:
  // no localized text, no other function of a platform interface or object of the main thread. It
  // must not throw. Its captures are destroyed on the background thread before `completion` is
  // called, or on the main thread if it never runs; those of `completion` always on the main
  // thread.
  virtual void run(std::function<void()> work, std::function<void()> completion) = 0;

  // Called on the main thread. Blocks it until all work passed in so far has finished; completions
  // are called later, as always. For the last moments of the process, when nothing else is left to
  // do.
  virtual void drain() = 0;
};

// Runs `work` on the background thread and resumes the awaiting task with its value. If the task is
// destroyed first, the work still finishes and its value is discarded.
template <class Value>
CallbackAwaiter<Value> awaitBackground(BackgroundQueue& queue, std::function<Value()> work) {
  return awaitCallback<Value>([&queue, work = std::move(work)](Callback<Value> done) mutable {
    const auto value = std::make_shared<std::optional<Value>>();
    queue.run([work = std::move(work), value] { value->emplace(work()); },
              [value, done = std::move(done)] { done(*std::move(*value)); });
  });
}

}  // namespace navora
