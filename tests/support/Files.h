#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace navora {

// Returns the content of a file, or an empty string when the file cannot be read.
std::string readFile(const std::filesystem::path& path);

// Replaces a file's content and sets its mode, whatever the umask. Creates missing parent
// directories. Throws TestError when the file cannot be written.
void writeFile(const std::filesystem::path& path, std::string_view content, mode_t mode = 0644);

// A new, empty directory that is removed with its contents when the object is destroyed.
class TemporaryDirectory {
 public:
  // Throws TestError when the directory cannot be created.
  explicit TemporaryDirectory(
      std::string_view prefix = "navora-test",
      const std::filesystem::path& parent = std::filesystem::temp_directory_path());
  ~TemporaryDirectory();
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace navora
