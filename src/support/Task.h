#pragma once

#include <concepts>
#include <coroutine>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/CallbackAwaiter.h"
#include "support/FatalError.h"
#include "support/TaskPromise.h"

namespace navora {

template <class Result>
class TaskAwaiter;

// Stores the value of co_return.
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

// A coroutine for sequential asynchronous work on one thread:
//
//   Task<Answer> Poller::ask() {
//     const Reply reply = co_await awaitCallback<Reply>(
//         [&](Callback<Reply> done) { session_.send(request(), std::move(done)); });
//     co_return co_await interpret(reply);  // another task
//   }
//
// It runs immediately until it first suspends. The Task owns it: destroying or replacing the Task
// destroys the suspended coroutine and all tasks that it awaits, and no callback resumes it. If the
// coroutine is running at that moment (its own work destroyed its owner), it is destroyed at its
// next co_await or return; until then it must not use anything already destroyed.
//
// g++ 12 destroys some temporaries of a co_await expression twice: aggregates initialized in it
// with braces, and lambdas with owning captures. Store them in named variables first, and capture
// by reference. This rule can be dropped together with support for g++ 12.
//
// An exception leaving the coroutine is a fatal error. The coroutine copies its parameters but not
// what references and views refer to, and a lambda's captures are valid only while the lambda
// exists: pass by value what is used after the first suspension.
template <class Result = void>
class [[nodiscard]] Task {
 public:
  class promise_type;

  // An empty Task, neither running nor finished.
  Task() = default;
  Task(Task&& other) noexcept : promise_(std::exchange(other.promise_, nullptr)) {}
  Task& operator=(Task&& other) noexcept {
    // The old coroutine is destroyed last, when this Task is valid again, because destroying it may
    // run code that uses this Task.
    Task incoming(std::move(other));
    std::swap(promise_, incoming.promise_);
    return *this;
  }
  ~Task() {
    if (promise_) promise_->release();
  }

  bool isRunning() const { return promise_ && !promise_->isFinished(); }
  bool isFinished() const { return promise_ && promise_->isFinished(); }

  // Returns a reference to the coroutine's result, which may be moved from. Calling it before the
  // coroutine has finished is a fatal error.
  std::add_lvalue_reference_t<Result> result() const {
    if (!isFinished())
      fatalError("The result of an unfinished task was requested", "Task", __LINE__);
    return promise_->get();
  }

 private:
  friend class TaskAwaiter<Result>;
  explicit Task(promise_type* promise) : promise_(promise) {}

  promise_type* promise_ = nullptr;
};

// Suspends a task until another one, which it owns, has finished.
template <class Result>
class [[nodiscard]] TaskAwaiter {
 public:
  explicit TaskAwaiter(Task<Result> task) : task_(std::move(task)) {}

  bool await_ready() const { return false; }

  // Not inlined, for the same reason as CallbackAwaiter::await_suspend().
  template <std::derived_from<TaskPromise> Promise>
  [[gnu::noinline]] bool await_suspend(std::coroutine_handle<Promise> frame) {
    TaskPromise& parent = frame.promise();
    if (parent.endIfReleased()) return true;
    if (task_.isFinished()) return false;
    if (!task_.promise_) fatalError("An empty task was awaited", "Task", __LINE__);
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

// The customization points of the language.
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

  // Only callbacks and other tasks can be awaited: other awaiters would not check for a released
  // task.
  template <class Value>
  CallbackAwaiter<Value>&& await_transform(CallbackAwaiter<Value>&& awaiter) {
    return std::move(awaiter);
  }
  template <class Other>
  TaskAwaiter<Other> await_transform(Task<Other>&& task) {
    return TaskAwaiter<Other>(std::move(task));
  }
};

// Owns tasks that nothing awaits. Destroying the group destroys them.
class TaskGroup {
 public:
  // Takes ownership of the task, and destroys the tasks that have finished.
  void add(Task<> task) {
    std::erase_if(tasks_, [](const Task<>& old) { return !old.isRunning(); });
    tasks_.push_back(std::move(task));
  }

 private:
  std::vector<Task<>> tasks_;
};

}  // namespace navora
