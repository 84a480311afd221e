#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace navora {

// A member of an archive exactly as it is to stand there, however wicked.
struct TestMember {
  enum class Kind {
    file,
    folder,
    symbolicLink,
    hardLink,
    fifo,
    characterDevice,
    blockDevice,
    socket
  };

  std::string path;
  Kind kind = Kind::file;
  std::string content = {};
  // Of both kinds of links.
  std::string target = {};
  mode_t mode = 0644;
};

enum class TestCompression { none, gzip, xz, zstd, bzip2 };

// False if the archive could not be written.
bool writeTestArchive(const std::filesystem::path& file, const std::vector<TestMember>& members,
                      TestCompression compression = TestCompression::zstd);

}  // namespace navora
