#pragma once

#include "hosts/linux/installation/FileDescriptor.h"

namespace navora {

// What an update has to do with this start of the program, taken from the environment, where it is
// for nobody else.
class UpdateLaunch {
 public:
  // To be made before any other process is started.
  UpdateLaunch();

  bool followsUpdate() const { return static_cast<bool>(started_); }
  bool followsFailedUpdate() const { return failed_; }

  // Tells the installer that this version has started. Until then it is ready to go back.
  void confirm();

 private:
  FileDescriptor started_;
  bool failed_ = false;
};

}  // namespace navora
