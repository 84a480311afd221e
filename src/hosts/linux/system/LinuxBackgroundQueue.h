#pragma once

#include <functional>

#include <glib.h>

#include "platform/BackgroundJobs.h"
#include "platform/BackgroundQueue.h"
#include "support/Lifetime.h"

namespace navora {

// Borrows a thread of the process's common pool while there is work.
class LinuxBackgroundQueue final : public BackgroundQueue {
 public:
  LinuxBackgroundQueue() = default;
  ~LinuxBackgroundQueue() override;
  LinuxBackgroundQueue(const LinuxBackgroundQueue&) = delete;
  LinuxBackgroundQueue& operator=(const LinuxBackgroundQueue&) = delete;

  void run(std::function<void()> work, std::function<void()> completion) override;

 private:
  void workOnNext();

  BackgroundJobs jobs_;
  GThreadPool* pool_ = nullptr;
  Lifetime lifetime_;
  const std::function<void()> completeNext_ = lifetime_.guard([this] { jobs_.completeNext(); });
};

}  // namespace navora
