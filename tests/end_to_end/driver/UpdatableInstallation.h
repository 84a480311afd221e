#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace navora::driver {

// Installs this build in a folder, and returns the folder.
std::filesystem::path installBuild(const std::filesystem::path& folder);

// Returns the key that development builds trust; makeUpdateKey() writes one that no build trusts.
std::filesystem::path developmentUpdateKey();
void makeUpdateKey(const std::filesystem::path& file);

// An installation of Navora that can update itself, as unpacked from an archive, and the folder of
// its releases (see the service's option --updates).
class UpdatableInstallation {
 public:
  // Creates the installation below `folder` from an installed build.
  UpdatableInstallation(std::filesystem::path folder, const std::filesystem::path& built,
                        const std::string& version);

  std::filesystem::path folder() const { return folder_ / "Apps/navora"; }
  std::filesystem::path program() const { return folder() / "bin/navora"; }
  std::filesystem::path releases() const { return folder_ / "releases"; }

  // Returns the version in its record.
  std::string version() const;
  // Returns the names of other files beside it.
  std::vector<std::string> leftovers() const;
  // Returns the processes that run its program, in any version.
  std::vector<pid_t> runningPrograms() const;
  // Returns whether an installer is at work on this installation.
  bool isInstallerRunning() const;

  // Adds a release made from an installed build to the feed.
  void release(const std::filesystem::path& built, const std::string& version,
               const std::filesystem::path& key = developmentUpdateKey()) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace navora::driver
