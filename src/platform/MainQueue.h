#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/ObserverToken.h"

namespace navora {

// Schedules work on the main thread.
class MainQueue {
 public:
  virtual ~MainQueue() = default;

  // Runs `work` in a later iteration of the main loop. May be called on any thread.
  virtual void async(std::function<void()> work) = 0;
  // Runs `work` once after `delay`; destroying the token cancels it. `work` may destroy its own
  // token.
  virtual std::unique_ptr<ObserverToken> after(std::chrono::milliseconds delay,
                                               std::function<void()> work) = 0;
};

}  // namespace navora
