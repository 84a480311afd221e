#pragma once

#include <chrono>
#include <filesystem>

#include "hosts/linux/installation/FileDescriptor.h"
#include "hosts/linux/installation/Installation.h"
#include "hosts/linux/installation/UpdateFolder.h"

namespace navora {

// The last step of an update, in a process of its own that outlives the application: waits for its
// end, puts the new version in its place, starts it, and takes everything back if it does not
// start. Whenever this process is killed, the installation is the old version or the new one.
class UpdateInstaller {
 public:
  // In the environment of what is started: where the new version says that it has started...
  static constexpr const char* startedVariable = "NAVORA_UPDATE_STARTED";
  // ...and that the old version runs again, because the new one did not start.
  static constexpr const char* failedVariable = "NAVORA_UPDATE_FAILED";
  static constexpr std::chrono::seconds defaultPatience{60};

  // The new version waits in the folder. `application` can be read from once the application has
  // ended, and not before: a descriptor of its process.
  UpdateInstaller(Installation installation, UpdateFolder folder, FileDescriptor application);

  // Whether the new version runs.
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
