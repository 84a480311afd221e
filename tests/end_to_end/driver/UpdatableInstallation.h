#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace navora::driver {

// Puts what this build installs into a folder, and gives the folder.
std::filesystem::path installBuild(const std::filesystem::path& folder);

// The key that development builds trust, and a new one that nobody trusts.
std::filesystem::path developmentUpdateKey();
void makeUpdateKey(const std::filesystem::path& file);

// A Navora of its own that can update itself, as a user unpacks it, and the folder of the releases
// that it is offered (see the service's option --updates).
class UpdatableInstallation {
 public:
  // Below `folder`, made of an installed build.
  UpdatableInstallation(std::filesystem::path folder, const std::filesystem::path& built,
                        const std::string& version);

  std::filesystem::path folder() const { return folder_ / "Apps/navora"; }
  std::filesystem::path program() const { return folder() / "bin/navora"; }
  std::filesystem::path releases() const { return folder_ / "releases"; }

  // As its record says now.
  std::string version() const;
  // What there is beside it.
  std::vector<std::string> leftovers() const;
  // The processes that run its program, whichever version.
  std::vector<pid_t> runningPrograms() const;

  // Adds a release of an installed build to the feed.
  void release(const std::filesystem::path& built, const std::string& version,
               const std::filesystem::path& key = developmentUpdateKey()) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace navora::driver
