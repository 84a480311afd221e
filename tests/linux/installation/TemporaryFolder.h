#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace navora {

// A fresh folder, removed with everything in it at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = std::filesystem::temp_directory_path() / "navora-update-XXXXXX";
    if (::mkdtemp(name.data()) != nullptr) path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code unused;
    if (!path_.empty()) std::filesystem::remove_all(path_, unused);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Empty if there is none, so that whatever is made in it fails.
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace navora
