#pragma once

#include <chrono>

#include "end_to_end/driver/Display.h"

namespace navora::bench {

// Learns from the display itself when a window gets the keyboard. Asking for the focus again and
// again would keep the server from what is measured.
class FocusWatch {
 public:
  explicit FocusWatch(driver::Display& display);

  // The window that the keyboard goes to now.
  driver::WindowId focus();
  // Hears from now on when the window or one inside of it gets the keyboard.
  void follow(driver::WindowId window);
  // When one of the windows that are followed got the keyboard, after the last `forget`.
  std::chrono::steady_clock::time_point waitForFocus();
  // Forgets what has happened.
  void forget();

 private:
  // Whether one of the windows got the keyboard within a short time.
  bool hearsOfFocus();

  driver::XConnection events_;
};

}  // namespace navora::bench
