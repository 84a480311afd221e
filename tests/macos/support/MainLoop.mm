#include "frameworks/Foundation/MainLoop.h"

#include <chrono>

#include "contracts/MainLoop.h"
#include "tests/support/Wait.h"

namespace navora {

testing::AssertionResult waitUntil(const std::function<bool()>& condition) {
  using Clock = std::chrono::steady_clock;
  constexpr auto tick = std::chrono::milliseconds(5);
  const auto patience = std::chrono::milliseconds(static_cast<long>(10'000 * timeoutFactor()));
  const auto deadline = Clock::now() + patience;
  while (!condition()) {
    if (Clock::now() > deadline) {
      return testing::AssertionFailure() << "not true within " << patience.count() << " ms";
    }
    if (!doubles::MainLoop::turn()) doubles::MainLoop::waitForWork(tick);
  }
  return testing::AssertionSuccess();
}

void runPendingEvents() {
  while (doubles::MainLoop::turn()) {
  }
}

}  // namespace navora
