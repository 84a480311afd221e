#include "bench/WindowWatch.h"

#include "end_to_end/driver/ProcessTable.h"

namespace navora::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int minimumWidth = 700;  // wider than any dialog

}  // namespace

WindowWatch::WindowWatch(driver::Display& display) : display_(display), events_(display) {
  events_.select(events_.connection().root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  events_.connection().synchronize();
}

EventWatch::TimePoint WindowWatch::waitFor(pid_t program) {
  const auto deadline = Clock::now() + defaultTimeout();
  EventWatch::TimePoint latestMapping = Clock::now();
  while (Clock::now() < deadline) {
    const EventWatch::Batch batch = events_.wait(XCB_MAP_NOTIFY);
    latestMapping = batch.arrival.value_or(latestMapping);
    // Checked after a quiet period too: a window may set its process id only after it was mapped.
    if ((batch.arrival || !batch.any) && isShown(program)) return latestMapping;
    if (!driver::isAlive(program)) throw TestError("The program ended before it had a window");
  }
  throw TestError("The program showed no window\n" + display_.describeWindows());
}

bool WindowWatch::isShown(pid_t program) {
  const auto shown = display_.windows([program](const driver::WindowInfo& window) {
    return window.pid == program && window.mapped && window.content.width >= minimumWidth;
  });
  return !shown.empty();
}

}  // namespace navora::bench
