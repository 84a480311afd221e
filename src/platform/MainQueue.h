#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "platform/ObserverToken.h"

namespace navora {

// Work for later on the main thread.
class MainQueue {
 public:
  virtual ~MainQueue() = default;

  // After everything that is under way now.
  virtual void async(std::function<void()> work) = 0;
  // Once, unless the token goes first. The work may release its own token.
  virtual std::unique_ptr<ObserverToken> after(std::chrono::milliseconds delay,
                                               std::function<void()> work) = 0;
};

}  // namespace navora
