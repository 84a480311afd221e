#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "bench/ProcessFamily.h"
#include "bench/Program.h"
#include "bench/WindowWatch.h"
#include "end_to_end/driver/VirtualDesktop.h"

namespace navora::bench {

// One run of a program, from its start to the end of the last of its processes.
class Launch {
 public:
  Launch(driver::VirtualDesktop& desktop, const Program& program);
  ~Launch();
  Launch(const Launch&) = delete;
  Launch& operator=(const Launch&) = delete;

  // Both in milliseconds since just before the program was executed.
  double waitUntilShown();
  // By the page's own clock: the end of its load event. Needs a page with the driver of `origin`.
  double waitUntilLoaded(const std::string& origin);

  // Once it has stopped changing.
  FamilyMemory settledMemory() const;
  // During `duration`, which begins now.
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
