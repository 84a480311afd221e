#pragma once

#include <chrono>
#include <filesystem>

#include "hosts/linux/installation/Installation.h"
#include "hosts/linux/installation/UpdateFolder.h"
#include "platform/FileDescriptor.h"

namespace navora {

// The last step of an update, in a process that outlives the application: waits for the application
// to exit, exchanges the versions, starts the new one, and exchanges them back if it does not
// start. If this process is killed at any point, the installation is the complete old or new
// version.
class UpdateInstaller {
 public:
  // Environment variable of the new version: the number of a socket on which it confirms its start.
  static constexpr const char* startedVariable = "NAVORA_UPDATE_STARTED";
  // Environment variable of the old version: set if the new one did not start.
  static constexpr const char* failedVariable = "NAVORA_UPDATE_FAILED";
  static constexpr std::chrono::seconds defaultPatience{60};

  // `folder` holds the new version. `application` is a pidfd of the application.
  UpdateInstaller(Installation installation, UpdateFolder folder, FileDescriptor application);

  // Returns whether the new version runs: it has `patience` to confirm its start.
  bool run(std::chrono::milliseconds patience = defaultPatience);

 private:
  void waitForApplication();
  bool startNewVersion(std::chrono::milliseconds patience);
  void startOldVersion();
  void startOldVersionWhereItWaits();
  static void startOldVersion(const std::filesystem::path& program);

  const Installation installation_;
  UpdateFolder folder_;
  FileDescriptor application_;
};

}  // namespace navora
