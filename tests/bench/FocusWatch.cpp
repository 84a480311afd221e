#include "bench/FocusWatch.h"

namespace navora::bench {

using Clock = std::chrono::steady_clock;

driver::WindowId FocusWatch::focus() {
  xcb_connection_t* connection = events_.connection().get();
  const driver::XReply<xcb_get_input_focus_reply_t> reply{
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr)};
  return reply ? reply->focus : XCB_NONE;
}

void FocusWatch::follow(driver::WindowId window) {
  xcb_connection_t* connection = events_.connection().get();
  while (window != XCB_NONE && window != events_.connection().root()) {
    events_.select(window, XCB_EVENT_MASK_FOCUS_CHANGE);
    const driver::XReply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr)};
    window = tree ? tree->parent : XCB_NONE;
  }
}

EventWatch::TimePoint FocusWatch::waitForFocus() {
  const auto deadline = Clock::now() + defaultTimeout();
  while (Clock::now() < deadline) {
    if (const auto arrival = events_.wait(XCB_FOCUS_IN).arrival) return *arrival;
  }
  throw TestError("No watched window got the keyboard focus");
}

}  // namespace navora::bench
