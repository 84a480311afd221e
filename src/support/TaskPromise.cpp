#include "support/TaskPromise.h"

#include <exception>
#include <string>

#include "support/FatalError.h"

namespace navora {

TaskPromise::~TaskPromise() {
  if (parent_) parent_->child_ = nullptr;
  if (child_) child_->parent_ = nullptr;
}

void TaskPromise::resume() {
  running_ = true;
  frame_.resume();
}

bool TaskPromise::runs() const {
  const TaskPromise* task = this;
  while (task->child_)
    task = task->child_;
  return task->running_;
}

void TaskPromise::release() {
  released_ = true;
  if (!runs()) frame_.destroy();
}

bool TaskPromise::endIfReleased() {
  // At most one task of a chain is released: the others are owned by the frames of their parents.
  TaskPromise* released = this;
  while (released && !released->released_)
    released = released->parent_;
  if (!released) return false;
  running_ = false;
  // Also destroys the frames of the tasks that it awaits, including this one.
  released->frame_.destroy();
  return true;
}

bool TaskPromise::suspend() {
  running_ = false;
  return endIfReleased();
}

std::coroutine_handle<> TaskPromise::finish() {
  finished_ = true;
  TaskPromise* const parent = parent_;
  if (suspend() || !parent) return std::noop_coroutine();
  parent->child_ = nullptr;
  parent_ = nullptr;
  parent->running_ = true;
  return parent->frame_;
}

void TaskPromise::awaitBy(TaskPromise& parent) {
  parent_ = &parent;
  parent.child_ = this;
}

void TaskPromise::failUnhandled() {
  try {
    throw;
  } catch (const std::exception& exception) {
    fatalError(std::string("An exception left a task: ") + exception.what(), "Task", __LINE__);
  } catch (...) {
    fatalError("An exception left a task", "Task", __LINE__);
  }
}

}  // namespace navora
