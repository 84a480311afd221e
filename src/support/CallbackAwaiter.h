#pragma once

#include <concepts>
#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "support/TaskPromise.h"

namespace navora {

template <class Value>
struct CallbackOf {
  using Type = std::function<void(Value)>;
};

template <>
struct CallbackOf<void> {
  using Type = std::function<void()>;
};

template <class Value>
using Callback = typename CallbackOf<Value>::Type;

// Suspends a task until a callback is called; created by awaitCallback(). The callback and the
// awaiter share a small state, so that the callback can outlive the task.
template <class Value>
class [[nodiscard]] CallbackAwaiter {
 public:
  using Start = std::function<void(Callback<Value>)>;

  explicit CallbackAwaiter(Start start) : start_(std::move(start)) {}
  CallbackAwaiter(CallbackAwaiter&&) = default;
  CallbackAwaiter& operator=(CallbackAwaiter&&) = delete;

  ~CallbackAwaiter() {
    if (wait_) wait_->task = nullptr;
  }

  bool await_ready() const { return false; }

  // Not inlined: otherwise some compilers keep its variables in the coroutine frame, which may be
  // destroyed during the call.
  template <std::derived_from<TaskPromise> Promise>
  [[gnu::noinline]] bool await_suspend(std::coroutine_handle<Promise> frame) {
    TaskPromise& task = frame.promise();
    if (task.endIfReleased()) return true;
    const std::shared_ptr<Wait> wait = wait_;
    const Start start = std::move(start_);
    wait->task = &task;
    start(callbackFor(wait));
    wait->starting = false;
    if (wait->value) return task.endIfReleased();
    task.suspend();
    return true;
  }

  Value await_resume() {
    if constexpr (!std::is_void_v<Value>) {
      return std::move(*wait_->value);
    }
  }

 private:
  using Stored = std::conditional_t<std::is_void_v<Value>, std::monostate, Value>;

  struct Wait {
    TaskPromise* task = nullptr;  // null once the task is resumed or destroyed
    std::optional<Stored> value;
    bool starting = true;

    void finish(Stored result) {
      if (!task || value) return;
      value.emplace(std::move(result));
      if (!starting) task->resume();
    }
  };

  static Callback<Value> callbackFor(const std::shared_ptr<Wait>& wait) {
    if constexpr (std::is_void_v<Value>) {
      return [wait] { std::shared_ptr<Wait>(wait)->finish({}); };
    } else {
      return [wait](Value value) { std::shared_ptr<Wait>(wait)->finish(std::move(value)); };
    }
  }

  Start start_;
  std::shared_ptr<Wait> wait_ = std::make_shared<Wait>();
};

// Adapts an operation that completes through a callback: co_await calls `start` with the callback,
// and yields the value that the callback is called with. The callback may be called immediately,
// later or never, on the task's thread; calls after the first, and after the task was destroyed, do
// nothing.
template <class Value>
CallbackAwaiter<Value> awaitCallback(std::function<void(Callback<Value>)> start) {
  return CallbackAwaiter<Value>(std::move(start));
}

}  // namespace navora
