#include "tests/support/Wait.h"

#include <cstdlib>
#include <thread>

namespace navora {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds pollInterval{10};

}  // namespace

double timeoutFactor() {
  static const double factor = [] {
    const char* text = std::getenv("NAVORA_TEST_TIMEOUT_FACTOR");
    const double value = text ? std::strtod(text, nullptr) : 1.0;
    return value > 0 ? value : 1.0;
  }();
  return factor;
}

std::chrono::milliseconds defaultTimeout() {
  return std::chrono::milliseconds(static_cast<long>(30'000 * timeoutFactor()));
}

bool becomesTrue(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
  const auto deadline = Clock::now() + timeout;
  while (true) {
    // Reading the clock first gives the condition one check after the deadline, even if the machine
    // was too busy to check it before.
    const bool last = Clock::now() >= deadline;
    if (condition()) return true;
    if (last) return false;
    std::this_thread::sleep_for(pollInterval);
  }
}

bool holdsFor(const std::function<bool()>& condition, std::chrono::milliseconds duration) {
  return !becomesTrue([&] { return !condition(); }, duration);
}

void waitUntil(const std::function<bool()>& condition, std::string_view description,
               std::chrono::milliseconds timeout, const std::function<std::string()>& state) {
  if (becomesTrue(condition, timeout)) return;
  std::string message = "Waited " + std::to_string(timeout.count()) + " ms in vain until ";
  message += description;
  if (state) message += "\n" + state();
  throw TestError(message);
}

}  // namespace navora
