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

// Writes into a private folder beside the destination, ".navora-download-" and six characters. A
// folder, because the web engine writes a second file beside the one that it is given, and creates
// both with the mode that every new file gets. A killed process leaves the folder behind.
class LinuxFileReplacement final : public FileReplacement {
 public:
  // `mainQueue` must outlive the replacement.
  static Expected<std::unique_ptr<FileReplacement>, PlatformError> make(
      const std::filesystem::path& destination, MainQueue& mainQueue);
  ~LinuxFileReplacement() override;
  LinuxFileReplacement(const LinuxFileReplacement&) = delete;
  LinuxFileReplacement& operator=(const LinuxFileReplacement&) = delete;

  const std::filesystem::path& file() const override { return file_; }
  void putInPlace(Completion completion) override;

 private:
  LinuxFileReplacement(std::filesystem::path destination, bool replaces,
                       std::filesystem::path folder, MainQueue& mainQueue);
  void ended();

  const std::filesystem::path destination_;
  // Whether the destination existed at first.
  const bool replaces_;
  const std::filesystem::path folder_;
  const std::filesystem::path file_;
  MainQueue& mainQueue_;
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
