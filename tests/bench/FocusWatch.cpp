#include "bench/FocusWatch.h"

#include <poll.h>

namespace navora::bench {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int pollMilliseconds = 50;
constexpr std::uint32_t focusChanges = XCB_EVENT_MASK_FOCUS_CHANGE;

}  // namespace

FocusWatch::FocusWatch(driver::Display& display) : events_(display.name()) {}

driver::WindowId FocusWatch::focus() {
  const driver::XReply<xcb_get_input_focus_reply_t> reply{
      xcb_get_input_focus_reply(events_.get(), xcb_get_input_focus(events_.get()), nullptr)};
  return reply ? reply->focus : XCB_NONE;
}

void FocusWatch::follow(driver::WindowId window) {
  while (window != XCB_NONE && window != events_.root()) {
    xcb_change_window_attributes(events_.get(), window, XCB_CW_EVENT_MASK, &focusChanges);
    const driver::XReply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(events_.get(), xcb_query_tree(events_.get(), window), nullptr)};
    window = tree ? tree->parent : XCB_NONE;
  }
}

Clock::time_point FocusWatch::waitForFocus() {
  const Clock::time_point deadline = Clock::now() + defaultTimeout();
  while (Clock::now() < deadline) {
    if (hearsOfFocus()) return Clock::now();
  }
  throw TestError("No window that is followed gets the keyboard");
}

void FocusWatch::forget() {
  events_.synchronize();
  while (const driver::XReply<xcb_generic_event_t> event{xcb_poll_for_event(events_.get())}) {
  }
}

bool FocusWatch::hearsOfFocus() {
  pollfd ready{xcb_get_file_descriptor(events_.get()), POLLIN, 0};
  poll(&ready, 1, pollMilliseconds);
  bool got = false;
  while (const driver::XReply<xcb_generic_event_t> event{xcb_poll_for_event(events_.get())}) {
    got = got || event->response_type == XCB_FOCUS_IN;
  }
  return got;
}

}  // namespace navora::bench
