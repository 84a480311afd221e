#pragma once

#include <memory>

#include "platform/Workspace.h"

namespace navora {

// The program in front, represented by its active window. X11 only.
class LinuxRunningApplication final : public RunningApplication {
 public:
  // Returns null if no active window is known.
  static std::shared_ptr<LinuxRunningApplication> frontmost();

  explicit LinuxRunningApplication(unsigned long window) : window_(window) {}

  bool isTerminated() const override;
  void activate() override;

 private:
  // X11 window id.
  unsigned long window_;
};

}  // namespace navora
