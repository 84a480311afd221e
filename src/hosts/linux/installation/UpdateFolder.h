#pragma once

#include <filesystem>
#include <optional>
#include <utility>

#include "hosts/linux/installation/Installation.h"
#include "platform/FileDescriptor.h"
#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

// The locked folder beside an installation in which its next version is prepared. After the
// exchange it holds the old version until the new one has started. The destructor removes the
// folder. What a killed program leaves in it can be deleted: the installation itself is complete at
// every moment.
class UpdateFolder {
 public:
  // Locks the folder, creating or emptying it. Fails if another program has locked it, or the file
  // system cannot exchange folders. May be called on any thread.
  static Expected<UpdateFolder, PlatformError> claim(const Installation& installation);
  // Takes ownership of a folder whose lock was inherited with the descriptor.
  static UpdateFolder adopt(std::filesystem::path folder, FileDescriptor lock);
  // Removes the folder unless a running program has locked it.
  static void removeLeftovers(const Installation& installation);

  UpdateFolder(UpdateFolder&& other) noexcept = default;
  UpdateFolder& operator=(UpdateFolder other) noexcept;
  ~UpdateFolder();

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path archive() const { return path_ / "archive"; }
  // Where the archive is unpacked, and the installation in it.
  std::filesystem::path unpacked() const { return path_ / "new"; }
  std::filesystem::path version() const { return unpacked() / "navora"; }

  // Releases ownership, for another program to adopt: this object no longer removes the folder,
  // which stays locked as long as any duplicate of the returned descriptor is open.
  FileDescriptor handOver();

 private:
  UpdateFolder(std::filesystem::path path, FileDescriptor lock)
      : path_(std::move(path)), lock_(std::move(lock)) {}

  std::filesystem::path path_;
  // Empty after handOver(); the destructor then keeps the folder.
  FileDescriptor lock_;
};

}  // namespace navora
