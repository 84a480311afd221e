#pragma once

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "fakes/EventLog.h"
#include "platform/FileReplacement.h"
#include "support/Expected.h"
#include "support/Lifetime.h"

namespace navora {

// The files that fake replacements write and replace. A write that was started ends when the test
// says so.
class FakeDisk {
 public:
  explicit FakeDisk(EventLog& log) : log_(log) {}

  std::map<std::filesystem::path, std::string> files;
  // If set, no file can be written anywhere.
  std::optional<PlatformError> refusal;

  Expected<std::unique_ptr<FileReplacement>, PlatformError> replace(
      const std::filesystem::path& destination);
  // Ends every putInPlace() that was called so far.
  void finishWriting();

 private:
  friend class FakeFileReplacement;

  EventLog& log_;
  int count_ = 0;
  std::deque<std::function<void()>> writing_;
};

class FakeFileReplacement final : public FileReplacement {
 public:
  FakeFileReplacement(FakeDisk& disk, std::filesystem::path destination,
                      std::filesystem::path file);
  ~FakeFileReplacement() override;
  FakeFileReplacement(const FakeFileReplacement&) = delete;
  FakeFileReplacement& operator=(const FakeFileReplacement&) = delete;

  const std::filesystem::path& file() const override { return file_; }
  void putInPlace(Completion completion) override;

 private:
  std::optional<PlatformError> move();

  FakeDisk& disk_;
  const std::filesystem::path destination_;
  const std::filesystem::path file_;
  const bool replaces_;
  Completion completion_;
  Lifetime lifetime_;
};

}  // namespace navora
