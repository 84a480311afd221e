#pragma once

#include "platform/FileDescriptor.h"

namespace navora {

// How an update is related to this start of the program. The installer says so in environment
// variables, which the constructor removes, so that child processes do not inherit them.
class UpdateLaunch {
 public:
  // Must come before any other process is started.
  UpdateLaunch();

  bool followsUpdate() const { return static_cast<bool>(started_); }
  bool followsFailedUpdate() const { return failed_; }

  // Tells the installer that this version has started. Without it the installer restores the old
  // version.
  void confirm();

 private:
  FileDescriptor started_;
  bool failed_ = false;
};

}  // namespace navora
