#pragma once

#include <functional>

#import <Foundation/Foundation.h>

#include "platform/BackgroundJobs.h"
#include "platform/BackgroundQueue.h"
#include "support/Lifetime.h"

namespace navora {

class MacBackgroundQueue final : public BackgroundQueue {
 public:
  MacBackgroundQueue();
  ~MacBackgroundQueue() override;
  MacBackgroundQueue(const MacBackgroundQueue&) = delete;
  MacBackgroundQueue& operator=(const MacBackgroundQueue&) = delete;

  void run(std::function<void()> work, std::function<void()> completion) override;
  void drain() override { jobs_.waitUntilFinished(); }

 private:
  BackgroundJobs jobs_;
  dispatch_queue_t queue_;
  Lifetime lifetime_;
  const std::function<void()> completeNext_ = lifetime_.guard([this] { jobs_.completeNext(); });
};

}  // namespace navora
