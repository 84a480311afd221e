#include "service/jobs/JobRunner.h"

#include <chrono>
#include <iostream>
#include <optional>

namespace navora::service {
namespace {

constexpr Milliseconds retryAfterFailure = 1000;

}  // namespace

JobRunner::JobRunner(Captures& captures) : captures_(captures), thread_([this] { work(); }) {}

JobRunner::~JobRunner() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  changed_.notify_all();
  thread_.join();
}

void JobRunner::wake() {
  {
    const std::lock_guard lock(mutex_);
    woken_ = true;
  }
  changed_.notify_all();
}

void JobRunner::work() {
  std::unique_lock lock(mutex_);
  while (!stopping_) {
    woken_ = false;
    lock.unlock();
    std::optional<Milliseconds> next;
    try {
      next = captures_.finishDueJobs(currentTime());
    } catch (const DatabaseError& error) {
      std::cerr << "navora-service: a job could not be finished: " << error.what() << "\n";
      next = currentTime() + retryAfterFailure;
    }
    lock.lock();
    const auto needed = [this] { return woken_ || stopping_; };
    if (next) {
      changed_.wait_for(lock, std::chrono::milliseconds(*next - currentTime()), needed);
    } else {
      changed_.wait(lock, needed);
    }
  }
}

}  // namespace navora::service
