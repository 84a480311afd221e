#pragma once

#include <chrono>

#include "end_to_end/driver/Display.h"

namespace navora::bench {

// Learns from the display itself when a window comes onto the screen. To be made before the program
// that is to show it starts.
class WindowWatch {
 public:
  explicit WindowWatch(driver::Display& display);

  // When the program's main window came onto the screen.
  std::chrono::steady_clock::time_point waitFor(pid_t program);

 private:
  // Whether some window was mapped within a short time.
  bool waitForMapping();
  bool isShown(pid_t program);

  driver::Display& display_;
  driver::XConnection events_;
  std::chrono::steady_clock::time_point latestMapping_;
};

}  // namespace navora::bench
