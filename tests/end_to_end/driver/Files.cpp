#include "end_to_end/driver/Files.h"

#include <fstream>
#include <sstream>
#include <system_error>

#include <stdlib.h>

#include "end_to_end/driver/Wait.h"

namespace navora::driver {

std::string readFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream content;
  if (stream) content << stream.rdbuf();
  return content.str();
}

void writeFile(const std::filesystem::path& path, std::string_view content) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  stream.close();
  if (!stream) throw DriverError("Cannot write " + path.string());
}

TemporaryDirectory::TemporaryDirectory(std::string_view prefix) {
  std::string pattern =
      (std::filesystem::temp_directory_path() / (std::string(prefix) + "-XXXXXX")).string();
  if (!mkdtemp(pattern.data())) throw DriverError("Cannot create a folder like " + pattern);
  path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  // Programs that are just ending may still write: one file that stays behind must not fail a test.
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace navora::driver
