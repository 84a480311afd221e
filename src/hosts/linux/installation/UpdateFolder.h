#pragma once

#include <filesystem>
#include <optional>
#include <utility>

#include "hosts/linux/installation/FileDescriptor.h"
#include "hosts/linux/installation/Installation.h"
#include "platform/PlatformError.h"
#include "support/Expected.h"

namespace navora {

// The folder beside an installation in which its next version is made ready, and in which the
// present one waits, after the exchange, until the next has started. One program at a time holds
// it, and removes it when it goes. What a program left that was killed is never needed by anybody:
// the installation itself is whole at every moment.
class UpdateFolder {
 public:
  // An empty folder. Fails when another program holds it, and where the file system cannot exchange
  // folders.
  static Expected<UpdateFolder, PlatformError> claim(const Installation& installation);
  // Takes over the folder whose lock came with the descriptor.
  static UpdateFolder adopt(std::filesystem::path folder, FileDescriptor lock);
  // Removes what was left behind by a program that is gone.
  static void removeLeftovers(const Installation& installation);

  UpdateFolder(UpdateFolder&& other) noexcept = default;
  UpdateFolder& operator=(UpdateFolder other) noexcept;
  ~UpdateFolder();

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path archive() const { return path_ / "archive"; }
  // Where archives are unpacked, and the folder that they bring.
  std::filesystem::path unpacked() const { return path_ / "new"; }
  std::filesystem::path version() const { return unpacked() / "navora"; }

  // For another program, which then removes the folder: it stays locked as long as any copy of the
  // descriptor is open.
  FileDescriptor handOver();

 private:
  UpdateFolder(std::filesystem::path path, FileDescriptor lock)
      : path_(std::move(path)), lock_(std::move(lock)) {}

  std::filesystem::path path_;
  // Without it, the folder is not ours any more.
  FileDescriptor lock_;
};

}  // namespace navora
