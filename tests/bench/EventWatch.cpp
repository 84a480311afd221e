#include "bench/EventWatch.h"

#include <poll.h>

namespace navora::bench {

namespace {

constexpr int timeoutMilliseconds = 50;
constexpr std::uint8_t sentByClient = 0x80;

using Event = driver::XReply<xcb_generic_event_t>;

}  // namespace

void EventWatch::select(driver::WindowId window, std::uint32_t mask) {
  xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &mask);
}

EventWatch::Batch EventWatch::wait(std::uint8_t type) {
  pollfd ready{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
  poll(&ready, 1, timeoutMilliseconds);
  const TimePoint now = std::chrono::steady_clock::now();
  Batch batch{.any = ready.revents != 0, .arrival = std::nullopt};
  while (const Event event{xcb_poll_for_event(connection_.get())}) {
    if ((event->response_type & ~sentByClient) == type) batch.arrival = now;
  }
  return batch;
}

void EventWatch::discard() {
  connection_.synchronize();
  while (const Event event{xcb_poll_for_event(connection_.get())}) {
  }
}

}  // namespace navora::bench
