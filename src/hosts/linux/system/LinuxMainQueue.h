#pragma once

#include "platform/MainQueue.h"

namespace navora {

class LinuxMainQueue final : public MainQueue {
 public:
  void async(std::function<void()> work) override;
  std::unique_ptr<ObserverToken> after(std::chrono::milliseconds delay,
                                       std::function<void()> work) override;
};

}  // namespace navora
