#include "hosts/linux/LinuxResources.h"

#include <fstream>
#include <iterator>
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
  std::ifstream file(folder_ / (std::string(name) + "." + std::string(extension)),
                     std::ios::binary);
  if (!file) return std::nullopt;
  std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (file.bad() || !isValidUtf8(text)) return std::nullopt;
  return text;
}

}  // namespace navora
