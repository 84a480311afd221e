#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/PrivateFile.h"

namespace navora {

// A PrivateFile on any POSIX file system; both hosts use it. write() writes "NAME.new" beside the
// file, flushes it and renames it; setAside() renames the file to "NAME.damaged".
class PosixPrivateFile final : public PrivateFile {
 public:
  // The first write creates the folder.
  explicit PosixPrivateFile(std::filesystem::path path);

  Content read() const override;
  std::optional<PlatformError> write(std::string_view content) override;
  std::optional<PlatformError> remove() override;
  Expected<std::string, PlatformError> setAside() override;

 private:
  const std::filesystem::path path_;
  const std::filesystem::path newPath_;
};

}  // namespace navora
