#pragma once

#include <cstddef>
#include <functional>

#include "platform/BackgroundJobs.h"
#include "platform/BackgroundQueue.h"

namespace navora {

// A queue that runs each piece of work and each completion when the test says so.
class FakeBackgroundQueue final : public BackgroundQueue {
 public:
  void run(std::function<void()> work, std::function<void()> completion) override;
  void drain() override;

  // The number of jobs that have not started, and of finished ones whose completion has not been
  // called.
  std::size_t waiting() const { return waiting_; }
  std::size_t worked() const { return worked_; }
  // Runs the oldest pending work on another thread and waits for it.
  void workOnNext();
  // Calls the completion of the oldest finished work.
  void completeNext();
  // Runs all pending work and all completions, including what completions add.
  void finishAll();

 private:
  BackgroundJobs jobs_;
  std::size_t waiting_ = 0;
  std::size_t worked_ = 0;
};

}  // namespace navora
