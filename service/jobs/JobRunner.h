#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "service/storage/Captures.h"

namespace navora::service {

// The background thread that finishes each note's job when it is due, including jobs from an
// earlier run of the service.
class JobRunner {
 public:
  explicit JobRunner(Captures& captures);
  ~JobRunner();
  JobRunner(const JobRunner&) = delete;
  JobRunner& operator=(const JobRunner&) = delete;

  // Must be called after a job has been added.
  void wake();

 private:
  void work();

  Captures& captures_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool woken_ = false;
  bool stopping_ = false;
  std::thread thread_;
};

}  // namespace navora::service
