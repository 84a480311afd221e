#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/installation/FileDescriptor.h"
#include "hosts/linux/network/LinuxHttpSession.h"
#include "platform/PlatformError.h"

namespace navora {

// Fetches the archive of a release into a file: exactly as many bytes as the feed announces.
// Destroying it stops.
class UpdateDownload {
 public:
  struct Progress {
    // Bytes in all, and bytes since the last call.
    std::function<void(std::uint64_t)> expected;
    std::function<void(std::uint64_t)> received;
  };
  using Completion = std::function<void(std::optional<PlatformError>)>;

  UpdateDownload(UpdateArchive archive, std::filesystem::path file, Progress progress);

  // The completion comes once, later.
  void start(Completion completion);

 private:
  std::optional<PlatformError> begin(int status, std::uint64_t length);
  std::optional<PlatformError> write(std::string_view bytes);
  std::optional<PlatformError> end(const HttpSession::Result& result) const;

  const UpdateArchive archive_;
  const std::filesystem::path path_;
  const Progress progress_;
  FileDescriptor file_;
  std::uint64_t size_ = 0;
  LinuxHttpSession session_;
};

}  // namespace navora
