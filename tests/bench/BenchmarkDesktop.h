#pragma once

#include <memory>

#include "end_to_end/driver/ChildProcess.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::bench {

// A desktop whose window manager gives the window of surf, which would open a smaller one, the size
// of Navora's, so that both paint as much.
class BenchmarkDesktop {
 public:
  explicit BenchmarkDesktop(bool accessibility);

  driver::VirtualDesktop& desktop() { return desktop_; }

 private:
  driver::VirtualDesktop desktop_;
  std::unique_ptr<driver::ChildProcess> windowManager_;
};

}  // namespace navora::bench
