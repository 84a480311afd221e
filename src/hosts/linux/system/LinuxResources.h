#pragma once

#include <filesystem>

#include "platform/Resources.h"

namespace navora {

// Reads resources from ../share/navora, relative to the folder of the executable.
class LinuxResources final : public Resources {
 public:
  LinuxResources();
  explicit LinuxResources(std::filesystem::path folder);

  // Returns the folder that the resources are read from.
  const std::filesystem::path& folder() const { return folder_; }

  std::optional<std::string> read(std::string_view name, std::string_view extension) const override;

 private:
  std::filesystem::path folder_;
};

}  // namespace navora
