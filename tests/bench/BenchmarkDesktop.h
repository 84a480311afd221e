#pragma once

#include <memory>

#include "end_to_end/driver/ChildProcess.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::bench {

// A virtual desktop whose window manager gives surf's window, which is smaller by default, the size
// of Navora's, so that both programs paint the same area.
class BenchmarkDesktop {
 public:
  explicit BenchmarkDesktop(bool accessibility);

  driver::VirtualDesktop& desktop() { return desktop_; }

 private:
  driver::VirtualDesktop desktop_;
  std::unique_ptr<driver::ChildProcess> windowManager_;
};

}  // namespace navora::bench
