#pragma once

#include <coroutine>

namespace navora {

// The state of a task that does not depend on its result type: whether it is running, which task
// awaits it, and whether its owner has released it.
class TaskPromise {
 public:
  TaskPromise() = default;
  TaskPromise(const TaskPromise&) = delete;
  TaskPromise& operator=(const TaskPromise&) = delete;

  bool isFinished() const { return finished_; }

  // Resumes the suspended frame. The frame may be destroyed on return.
  void resume();

  // Releases the owner's hold: destroys the frame immediately or, if it or a task that it awaits is
  // running, as soon as the running one is suspended.
  void release();

  // Called before each suspension (endIfReleased) and when it takes effect (suspend). Return true
  // if the frame, or a task that awaits it, was released while it ran: then the frame has been
  // destroyed, and nothing in it may be used.
  [[nodiscard]] bool endIfReleased();
  bool suspend();

  // Called at the frame's final suspension. Returns the coroutine to resume, possibly a no-op.
  std::coroutine_handle<> finish();

  // Links this task with the one that awaits it. Neither owns the other.
  void awaitBy(TaskPromise& parent);

  // Reports an exception that left the coroutine as a fatal error.
  [[noreturn]] static void failUnhandled();

 protected:
  explicit TaskPromise(std::coroutine_handle<> frame) : frame_(frame) {}
  ~TaskPromise();

 private:
  bool runs() const;

  std::coroutine_handle<> frame_;
  TaskPromise* parent_ = nullptr;
  TaskPromise* child_ = nullptr;
  bool running_ = true;  // a task starts running when it is created
  bool released_ = false;
  bool finished_ = false;
};

}  // namespace navora
