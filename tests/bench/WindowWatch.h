#pragma once

#include "bench/EventWatch.h"
#include "end_to_end/driver/Display.h"

namespace navora::bench {

// Measures when a program's main window is mapped. Must be created before the program starts.
class WindowWatch {
 public:
  explicit WindowWatch(driver::Display& display);

  // Returns when the program's main window was mapped. Throws a TestError if the program ends
  // first or shows no window in time.
  EventWatch::TimePoint waitFor(pid_t program);

 private:
  bool isShown(pid_t program);

  driver::Display& display_;
  EventWatch events_;
};

}  // namespace navora::bench
