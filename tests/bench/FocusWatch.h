#pragma once

#include "bench/EventWatch.h"
#include "end_to_end/driver/Display.h"

namespace navora::bench {

// Measures when a window gets the keyboard focus.
class FocusWatch {
 public:
  explicit FocusWatch(driver::Display& display) : events_(display) {}

  // Returns the window that has the keyboard focus now.
  driver::WindowId focus();
  // Watches the window and its ancestors from now on.
  void follow(driver::WindowId window);
  // Returns when a watched window got the focus since the last `forget`. Throws a TestError if
  // none gets it in time.
  EventWatch::TimePoint waitForFocus();
  // Discards the events so far.
  void forget() { events_.discard(); }

 private:
  EventWatch events_;
};

}  // namespace navora::bench
