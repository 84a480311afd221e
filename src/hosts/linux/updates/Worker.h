#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

#include "platform/PlatformError.h"
#include "support/Lifetime.h"

namespace navora {

// Does long work on a thread of its own. Destroying it asks the work to stop and waits for its end;
// nothing is told then.
class Worker {
 public:
  // On the thread: looks at `cancelled` now and then.
  using Work = std::function<std::optional<PlatformError>(const std::atomic<bool>& cancelled)>;
  // Later, on the main thread.
  using Completion = std::function<void(std::optional<PlatformError>)>;

  Worker(Work work, Completion completion);
  ~Worker();
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

 private:
  std::atomic<bool> cancelled_ = false;
  Lifetime lifetime_;
  std::thread thread_;
};

}  // namespace navora
