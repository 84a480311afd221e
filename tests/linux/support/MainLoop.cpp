#include "linux/support/MainLoop.h"

#include <glib.h>

#include "tests/support/Wait.h"

namespace navora {
namespace {

constexpr guint tickMilliseconds = 5;

// Wakes the main loop regularly, because many conditions change in other processes.
class Ticker {
 public:
  Ticker()
      // Low priority, so that a slow condition does not keep GTK from drawing.
      : source_(g_timeout_add_full(
            G_PRIORITY_LOW, tickMilliseconds,
            [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr)) {}
  ~Ticker() { g_source_remove(source_); }
  Ticker(const Ticker&) = delete;
  Ticker& operator=(const Ticker&) = delete;

 private:
  guint source_;
};

}  // namespace

std::chrono::milliseconds patience() {
  return std::chrono::milliseconds(static_cast<long>(10'000 * timeoutFactor()));
}

testing::AssertionResult waitUntil(const std::function<bool()>& condition) {
  const Ticker ticker;
  const auto deadline = std::chrono::steady_clock::now() + patience();
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline)
      return testing::AssertionFailure() << "not true within " << patience().count() << " ms";
    g_main_context_iteration(nullptr, TRUE);
  }
  return testing::AssertionSuccess();
}

void runPendingEvents() {
  while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
  }
}

}  // namespace navora
