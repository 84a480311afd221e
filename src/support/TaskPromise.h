#pragma once

#include <coroutine>

namespace navora {

// What every task's frame knows about its place: whether it runs, who awaits it, and whether its
// owner has let go of it. The rules of Task are kept here, once for all result types.
class TaskPromise {
 public:
  TaskPromise() = default;
  TaskPromise(const TaskPromise&) = delete;
  TaskPromise& operator=(const TaskPromise&) = delete;

  bool isFinished() const { return finished_; }

  // Continues the frame where it is suspended. It may be gone on return.
  void resume();

  // The owner lets go. The frame is destroyed now or, when it or a task that it awaits is running,
  // as soon as that one is suspended again.
  void release();

  // To be called before each wait begins and again when it has begun. Returns true if this was the
  // end: the frame, or a task that awaits it, had been released while it ran. Then the frame has
  // been destroyed, and nothing that lives in it may be touched.
  [[nodiscard]] bool endIfReleased();
  bool suspend();

  // Called when the frame has run to its end. Returns what is to run next, perhaps nothing.
  std::coroutine_handle<> finish();

  // The task that awaits this one, and the link back. Neither is owned.
  void awaitBy(TaskPromise& parent);

  // An exception has left the coroutine.
  [[noreturn]] static void failUnhandled();

 protected:
  explicit TaskPromise(std::coroutine_handle<> frame) : frame_(frame) {}
  ~TaskPromise();

 private:
  bool runs() const;

  std::coroutine_handle<> frame_;
  TaskPromise* parent_ = nullptr;
  TaskPromise* child_ = nullptr;
  bool running_ = true;  // a task starts at once
  bool released_ = false;
  bool finished_ = false;
};

}  // namespace navora
