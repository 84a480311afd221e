#pragma once

#include <cstddef>
#include <functional>

#include "platform/BackgroundJobs.h"
#include "platform/BackgroundQueue.h"

namespace navora {

// A queue whose every step is the test's.
class FakeBackgroundQueue final : public BackgroundQueue {
 public:
  void run(std::function<void()> work, std::function<void()> completion) override;

  // How much work has not begun, and how much has been done without its completion.
  std::size_t waiting() const { return waiting_; }
  std::size_t worked() const { return worked_; }
  // Does the oldest work that waits, on another thread, and waits for its end.
  void workOnNext();
  // Calls the completion of the oldest work that has been done.
  void completeNext();
  // All of both, what completions hand over included.
  void finishAll();

 private:
  BackgroundJobs jobs_;
  std::size_t waiting_ = 0;
  std::size_t worked_ = 0;
};

}  // namespace navora
