#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "service/storage/Captures.h"

namespace navora::service {

/// The background worker: finishes each note's job when it is due. Jobs that an earlier run of the
/// service left behind are finished as well.
class JobRunner {
 public:
  explicit JobRunner(Captures& captures);
  ~JobRunner();
  JobRunner(const JobRunner&) = delete;
  JobRunner& operator=(const JobRunner&) = delete;

  /// To be called after a job was added.
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
