#include "tests/support/Files.h"

#include <fstream>
#include <sstream>
#include <system_error>

#include <stdlib.h>
#include <sys/stat.h>

#include "tests/support/Wait.h"

namespace navora {

std::string readFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::ostringstream content;
  if (stream) content << stream.rdbuf();
  return content.str();
}

void writeFile(const std::filesystem::path& path, std::string_view content, mode_t mode) {
  std::filesystem::create_directories(path.parent_path());
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  stream.close();
  if (!stream || ::chmod(path.c_str(), mode) != 0) throw TestError("Cannot write " + path.string());
}

TemporaryDirectory::TemporaryDirectory(std::string_view prefix,
                                       const std::filesystem::path& parent) {
  std::string pattern = (parent / (std::string(prefix) + "-XXXXXX")).string();
  if (!::mkdtemp(pattern.data())) throw TestError("Cannot create a directory like " + pattern);
  path_ = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  // A process that is still exiting may be writing here: a leftover file must not fail the test.
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace navora
