#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/PrivateFile.h"

namespace navora {

// A file in memory. Copies of `Disk` see the same file, so that a later "process" can read it.
class FakePrivateFile final : public PrivateFile {
 public:
  struct Disk {
    std::optional<std::string> content;
    std::optional<std::string> aside;
    // What every call reports instead of doing anything.
    std::optional<PlatformError> failure;
    // What remove() reports instead of doing anything.
    std::optional<PlatformError> removalFailure;
    int writes = 0;
    int removals = 0;
  };

  explicit FakePrivateFile(std::shared_ptr<Disk> disk) : disk_(std::move(disk)) {}

  Content read() const override {
    if (disk_->failure) return Unexpected(*disk_->failure);
    return disk_->content;
  }
  std::optional<PlatformError> write(std::string_view content) override {
    if (disk_->failure) return disk_->failure;
    ++disk_->writes;
    disk_->content = content;
    return std::nullopt;
  }
  std::optional<PlatformError> remove() override {
    if (disk_->failure) return disk_->failure;
    if (disk_->removalFailure) return disk_->removalFailure;
    ++disk_->removals;
    disk_->content.reset();
    return std::nullopt;
  }
  Expected<std::string, PlatformError> setAside() override {
    if (disk_->failure) return Unexpected(*disk_->failure);
    if (!disk_->content) return Unexpected(PlatformError{"POSIX", 2, "No such file"});
    disk_->aside = std::exchange(disk_->content, std::nullopt);
    return std::string("file.damaged");
  }

 private:
  const std::shared_ptr<Disk> disk_;
};

}  // namespace navora
