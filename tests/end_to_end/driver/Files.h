#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace navora::driver {

// The content of a file; empty when there is none.
std::string readFile(const std::filesystem::path& path);

// Writes a whole file and the folders above it.
void writeFile(const std::filesystem::path& path, std::string_view content);

// A fresh folder below the system's temporary folder, removed with everything in it at the end.
class TemporaryDirectory {
 public:
  explicit TemporaryDirectory(std::string_view prefix);
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace navora::driver
