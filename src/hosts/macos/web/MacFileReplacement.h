#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

#import <Foundation/Foundation.h>

#include "platform/FileReplacement.h"
#include "support/Expected.h"
#include "support/Lifetime.h"

namespace navora {

// Writes into the folder that the system provides for replacing the destination: private, new, and
// on the same volume. A folder beside the destination would need the user's permission where only
// the file chosen in a save panel may be written. The system deletes what a killed process leaves.
class MacFileReplacement final : public FileReplacement {
 public:
  static Expected<std::unique_ptr<FileReplacement>, PlatformError> make(
      const std::filesystem::path& destination);
  ~MacFileReplacement() override;
  MacFileReplacement(const MacFileReplacement&) = delete;
  MacFileReplacement& operator=(const MacFileReplacement&) = delete;

  const std::filesystem::path& file() const override { return file_; }
  void putInPlace(Completion completion) override;

 private:
  MacFileReplacement(std::filesystem::path destination, bool replaces, NSURL* _Nonnull folder);
  void ended();

  const std::filesystem::path destination_;
  // Whether the destination existed at first.
  const bool replaces_;
  NSURL* _Nonnull folder_;
  const std::filesystem::path file_;
  Completion completion_;
  // Flushing a large file takes seconds, which must delay neither the screen nor the work of the
  // background queue.
  std::thread worker_;
  // Set by the worker; nil if the file is in place.
  NSError* _Nullable error_ = nil;
  Lifetime lifetime_;
  const std::function<void()> ended_ = lifetime_.guard([this] { ended(); });
};

}  // namespace navora
