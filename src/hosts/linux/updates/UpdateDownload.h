#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

#include "hosts/linux/installation/Appcast.h"
#include "hosts/linux/network/LinuxHttpSession.h"
#include "platform/FileDescriptor.h"
#include "platform/MainQueue.h"
#include "platform/PlatformError.h"

namespace navora {

// Downloads the archive of a release into a new file. Fails unless it has exactly the length that
// the feed states. Destroying the download cancels it; the completion is not called.
class UpdateDownload {
 public:
  struct Progress {
    // Called once, with the length in bytes.
    std::function<void(std::uint64_t)> expected;
    // Called with the number of bytes received since the last call.
    std::function<void(std::uint64_t)> received;
  };
  using Completion = std::function<void(std::optional<PlatformError>)>;

  // `file` must not exist. `mainQueue` must outlive the download.
  UpdateDownload(UpdateArchive archive, std::filesystem::path file, Progress progress,
                 MainQueue& mainQueue);

  // Calls `completion` once, after this function has returned, with the error or std::nullopt.
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
