#include "bench/WindowWatch.h"

#include <poll.h>

#include "end_to_end/driver/ProcessTable.h"

namespace navora::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int pollMilliseconds = 50;
constexpr int leastWidth = 700;  // no dialog comes near it

constexpr std::uint32_t windowChanges = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
constexpr std::uint8_t sentByClient = 0x80;

}  // namespace

WindowWatch::WindowWatch(driver::Display& display)
    : display_(display), events_(display.name()), latestMapping_(Clock::now()) {
  xcb_change_window_attributes(events_.get(), events_.root(), XCB_CW_EVENT_MASK, &windowChanges);
  events_.synchronize();
}

Clock::time_point WindowWatch::waitFor(pid_t program) {
  const Clock::time_point deadline = Clock::now() + defaultTimeout();
  while (Clock::now() < deadline) {
    if (waitForMapping() && isShown(program)) return latestMapping_;
    if (!driver::isAlive(program)) throw TestError("The program ended before it had a window");
  }
  throw TestError("The program showed no window\n" + display_.describeWindows());
}

bool WindowWatch::waitForMapping() {
  pollfd ready{xcb_get_file_descriptor(events_.get()), POLLIN, 0};
  poll(&ready, 1, pollMilliseconds);
  const Clock::time_point now = Clock::now();
  bool mapped = false;
  while (const driver::XReply<xcb_generic_event_t> event{xcb_poll_for_event(events_.get())}) {
    mapped = mapped || (event->response_type & ~sentByClient) == XCB_MAP_NOTIFY;
  }
  if (mapped) latestMapping_ = now;
  // A window that was on the screen before it said whose it is.
  return mapped || ready.revents == 0;
}

bool WindowWatch::isShown(pid_t program) {
  const auto shown = display_.windows([program](const driver::WindowInfo& window) {
    return window.pid == program && window.mapped && window.content.width >= leastWidth;
  });
  return !shown.empty();
}

}  // namespace navora::bench
