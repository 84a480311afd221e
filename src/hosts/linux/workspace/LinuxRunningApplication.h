#pragma once

#include <memory>

#include "platform/Workspace.h"

namespace navora {

// The window that the window manager has made the active one, of whichever program.
class LinuxRunningApplication final : public RunningApplication {
 public:
  // None where nobody can tell.
  static std::shared_ptr<LinuxRunningApplication> frontmost();

  explicit LinuxRunningApplication(unsigned long window) : window_(window) {}

  bool isTerminated() const override;
  void activate() override;

 private:
  // An identifier of the X server.
  unsigned long window_;
};

}  // namespace navora
