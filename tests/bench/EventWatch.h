#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "end_to_end/driver/Display.h"

namespace navora::bench {

// Waits for events of the X server on a connection of its own. Blocking on events rather than
// polling the server with requests keeps the server free for the program being measured.
class EventWatch {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  struct Batch {
    // Whether any event arrived.
    bool any = false;
    // When the batch arrived, if it contains an event of the requested type.
    std::optional<TimePoint> arrival;
  };

  explicit EventWatch(driver::Display& display) : connection_(display.name()) {}

  driver::XConnection& connection() { return connection_; }
  // Selects the events of `mask` (xcb_event_mask_t) on the window.
  void select(driver::WindowId window, std::uint32_t mask);
  // Waits up to 50 ms and consumes all events that have arrived. An event that a client sent with
  // SendEvent counts like the server's own.
  Batch wait(std::uint8_t type);
  // Consumes all events caused by requests that were sent before.
  void discard();

 private:
  driver::XConnection connection_;
};

}  // namespace navora::bench
