#include "hosts/linux/system/LinuxResources.h"

#include <fstream>
#include <system_error>
#include <utility>

#include "support/Text.h"

namespace navora {
namespace {

std::filesystem::path resourceFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return executable.parent_path().parent_path() / "share" / "navora";
}

}  // namespace

LinuxResources::LinuxResources() : LinuxResources(resourceFolder()) {}

LinuxResources::LinuxResources(std::filesystem::path folder) : folder_(std::move(folder)) {}

std::optional<std::string> LinuxResources::read(std::string_view name,
                                                std::string_view extension) const {
  const auto path = folder_ / (std::string(name) + "." + std::string(extension));
  // Fails for a folder, which std::ifstream would open.
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error) return std::nullopt;
  std::string text(size, '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file.read(text.data(), static_cast<std::streamsize>(size)) || !isValidUtf8(text))
    return std::nullopt;
  return text;
}

}  // namespace navora
