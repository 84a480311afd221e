#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "bench/ProcessFamily.h"
#include "bench/Program.h"
#include "bench/WindowWatch.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::bench {

// One run of a program. Destroying it ends all of the program's processes.
class Launch {
 public:
  Launch(driver::VirtualDesktop& desktop, const Program& program);
  ~Launch();
  Launch(const Launch&) = delete;
  Launch& operator=(const Launch&) = delete;

  // Waits for the main window and returns the time since the start of the program, in milliseconds.
  double waitUntilShown();
  // Waits for the end of the page's load event and returns the time since the start of the program,
  // in milliseconds, by the page's clock. Requires a page of `origin` with the test driver.
  double waitUntilLoaded(const std::string& origin);

  // Waits until the memory use has stopped changing and returns it.
  FamilyMemory settledMemory() const;
  // Measures the activity during `duration` from now.
  FamilyActivity activity(std::chrono::seconds duration) const;
  bool sandboxed() const { return family_.sandboxed(); }

 private:
  driver::VirtualDesktop& desktop_;
  WindowWatch watch_;
  std::chrono::system_clock::time_point wallStart_;
  std::chrono::steady_clock::time_point start_;
  std::unique_ptr<driver::ChildProcess> process_;
  ProcessFamily family_;
};

}  // namespace navora::bench
