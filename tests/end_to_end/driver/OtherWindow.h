#pragma once

#include "end_to_end/driver/Display.h"

namespace navora::driver {

// A small window of another program, which takes the keyboard focus.
class OtherWindow {
 public:
  explicit OtherWindow(Display& display);
  ~OtherWindow();
  OtherWindow(const OtherWindow&) = delete;
  OtherWindow& operator=(const OtherWindow&) = delete;

  WindowId id() const { return window_; }

 private:
  XConnection& connection_;
  xcb_window_t window_;
};

}  // namespace navora::driver
