#pragma once

#include <concepts>
#include <coroutine>
#include <optional>
#include <type_traits>
#include <utility>

#include "support/CallbackAwaiter.h"
#include "support/FatalError.h"
#include "support/TaskPromise.h"

namespace navora {

template <class Result>
class TaskAwaiter;

// Where co_return leaves the result.
template <class Result>
class TaskResult {
 public:
  void return_value(Result result) { result_.emplace(std::move(result)); }
  Result& get() { return *result_; }

 private:
  std::optional<Result> result_;
};

template <>
class TaskResult<void> {
 public:
  void return_void() {}
  void get() {}
};

// A coroutine that does one thing after another on one thread:
//
//   Task<Answer> Poller::ask() {
//     const Reply reply = co_await awaitCallback<Reply>(
//         [&](Callback<Reply> done) { session_.send(request(), std::move(done)); });
//     co_return co_await interpret(reply);  // another task
//   }
//
// It runs at once until it first waits. The Task owns it: destroying or replacing the Task ends the
// coroutine where it waits, with all tasks that it awaits, and no callback wakes it any more. If
// the coroutine is running just then (its own work led to its owner's end), it ends at its next
// co_await or return; until then it must not touch what has gone.
//
// g++ 12 destroys some temporaries of an expression with co_await twice: aggregates made in it with
// braces, and lambdas that own what they capture. Name them before, and capture by reference. The
// rule can go with that compiler.
//
// An exception must not leave the coroutine: that is a fatal error. A coroutine keeps the
// references and views that it was given, not what they refer to, and uses a lambda's captures only
// as long as the lambda lives: pass by value what must last beyond the first wait.
template <class Result = void>
class [[nodiscard]] Task {
 public:
  class promise_type;

  // No coroutine: neither running nor finished.
  Task() = default;
  Task(Task&& other) noexcept : promise_(std::exchange(other.promise_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    // The old coroutine ends last, so that this Task is whole for whatever that leads to.
    Task incoming(std::move(other));
    std::swap(promise_, incoming.promise_);
    return *this;
  }
  ~Task() {
    if (promise_) {
      promise_->release();
    }
  }

  bool isRunning() const { return promise_ && !promise_->isFinished(); }
  bool isFinished() const { return promise_ && promise_->isFinished(); }

  // What the coroutine returned; for Task<void> nothing. A fatal error before it has finished.
  // The result can be moved out: `std::move(task.result())`.
  std::add_lvalue_reference_t<Result> result() const {
    if (!isFinished()) {
      fatalError("A task was asked for its result before it has finished", "Task", __LINE__);
    }
    return promise_->get();
  }

 private:
  friend class TaskAwaiter<Result>;
  explicit Task(promise_type* promise) : promise_(promise) {}

  promise_type* promise_ = nullptr;
};

// Where a task waits for another one, which it owns from then on.
template <class Result>
class [[nodiscard]] TaskAwaiter {
 public:
  explicit TaskAwaiter(Task<Result> task) : task_(std::move(task)) {}

  bool await_ready() const { return false; }

  // Not inlined: some compilers would keep its variables in the frame, which may end in here.
  template <std::derived_from<TaskPromise> Promise>
  [[gnu::noinline]] bool await_suspend(std::coroutine_handle<Promise> frame) {
    TaskPromise& parent = frame.promise();
    if (parent.endIfReleased()) {
      return true;
    }
    if (task_.isFinished()) {
      return false;
    }
    if (!task_.promise_) {
      fatalError("An empty task was awaited", "Task", __LINE__);
    }
    task_.promise_->awaitBy(parent);
    parent.suspend();
    return true;
  }

  Result await_resume() {
    if constexpr (!std::is_void_v<Result>) {
      return std::move(task_.result());
    }
  }

 private:
  Task<Result> task_;
};

// The names that the language asks of a coroutine.
template <class Result>
class Task<Result>::promise_type : public TaskPromise, public TaskResult<Result> {
 public:
  promise_type() : TaskPromise(std::coroutine_handle<promise_type>::from_promise(*this)) {}

  Task get_return_object() { return Task(this); }
  std::suspend_never initial_suspend() noexcept { return {}; }
  void unhandled_exception() { failUnhandled(); }

  struct FinalAwaiter {
    bool await_ready() noexcept { return false; }
    [[gnu::noinline]] std::coroutine_handle<> await_suspend(
        std::coroutine_handle<promise_type> frame) noexcept {
      return frame.promise().finish();
    }
    void await_resume() noexcept {}
  };
  FinalAwaiter final_suspend() noexcept { return {}; }

  // A task waits for callbacks and for other tasks; nothing else keeps the rules above.
  template <class Value>
  CallbackAwaiter<Value>&& await_transform(CallbackAwaiter<Value>&& awaiter) {
    return std::move(awaiter);
  }
  template <class Other>
  TaskAwaiter<Other> await_transform(Task<Other>&& task) {
    return TaskAwaiter<Other>(std::move(task));
  }
};

}  // namespace navora
