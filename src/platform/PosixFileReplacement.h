#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

#include "platform/FileReplacement.h"
#include "platform/MainQueue.h"
#include "support/Expected.h"
#include "support/Lifetime.h"

namespace navora {

// A FileReplacement on any POSIX file system; both hosts use it. The new file is written into a
// folder, because a web engine may write a second file beside the one that it is given.
class PosixFileReplacement final : public FileReplacement {
 public:
  // Creates a new folder for the user only, on the volume of the file `destination`.
  using MakeFolder = std::function<Expected<std::filesystem::path, PlatformError>(
      const std::filesystem::path& destination)>;
  // Converts an errno value, with a description in the user's language.
  using SystemError = PlatformError (*)(int code);

  // `mainQueue` must outlive the replacement. Fails with the error of `makeFolder`.
  static Expected<std::unique_ptr<FileReplacement>, PlatformError> make(
      const std::filesystem::path& destination, MainQueue& mainQueue, const MakeFolder& makeFolder,
      SystemError systemError);
  // Deletes the folder.
  ~PosixFileReplacement() override;
  PosixFileReplacement(const PosixFileReplacement&) = delete;
  PosixFileReplacement& operator=(const PosixFileReplacement&) = delete;

  const std::filesystem::path& file() const override { return file_; }
  void putInPlace(Completion completion) override;

 private:
  PosixFileReplacement(std::filesystem::path destination, bool replaces,
                       std::filesystem::path folder, MainQueue& mainQueue, SystemError systemError);
  void ended();

  const std::filesystem::path destination_;
  // Whether the destination existed at first.
  const bool replaces_;
  const std::filesystem::path folder_;
  const std::filesystem::path file_;
  MainQueue& mainQueue_;
  const SystemError systemError_;
  Completion completion_;
  // Flushing a large file takes seconds, which must delay neither the screen nor the work of the
  // background queue.
  std::thread worker_;
  // 0 or an errno value, set by the worker.
  int result_ = 0;
  Lifetime lifetime_;
  const std::function<void()> ended_ = lifetime_.guard([this] { ended(); });
};

}  // namespace navora
