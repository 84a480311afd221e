#pragma once

#include "platform/MainQueue.h"

namespace navora {

// Runs work in GLib's default main context.
class LinuxMainQueue final : public MainQueue {
 public:
  void async(std::function<void()> work) override;
  std::unique_ptr<ObserverToken> after(std::chrono::milliseconds delay,
                                       std::function<void()> work) override;
};

}  // namespace navora
