#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "support/CallbackAwaiter.h"

namespace navora {

// Another thread for work on values that would keep the main thread too long.
//
// The host destroys the queue on the main thread: that waits for the end of the work that runs.
// Work that has not begun is dropped, and no completion comes any more.
class BackgroundQueue {
 public:
  virtual ~BackgroundQueue() = default;

  // Called on the main thread. `work` runs on the other one, after the work that was handed over
  // before, and then `completion` on the main thread, never before this returns.
  //
  // The work may touch only what it owns and what never changes: no door, no text of the interface,
  // nothing of the objects of the main thread. It must not throw. What it captured is released on
  // the other thread before the completion comes, or on the main thread if it never runs; what the
  // completion captured always on the main thread.
  virtual void run(std::function<void()> work, std::function<void()> completion) = 0;
};

// For tasks: the value that `work` makes on the other thread. The work goes on when the task ends,
// and its value is dropped.
template <class Value>
CallbackAwaiter<Value> awaitBackground(BackgroundQueue& queue, std::function<Value()> work) {
  return awaitCallback<Value>([&queue, work = std::move(work)](Callback<Value> done) mutable {
    const auto value = std::make_shared<std::optional<Value>>();
    queue.run([work = std::move(work), value] { value->emplace(work()); },
              [value, done = std::move(done)] { done(*std::move(*value)); });
  });
}

}  // namespace navora
