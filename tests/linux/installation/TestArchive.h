#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <sys/types.h>

namespace navora {

// A member of an archive, written as given, valid or not.
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
  // Target of a symbolic or hard link.
  std::string target = {};
  mode_t mode = 0644;
};

enum class TestCompression { none, gzip, xz, zstd, bzip2 };

// Returns false if the archive could not be written.
bool writeTestArchive(const std::filesystem::path& file, const std::vector<TestMember>& members,
                      TestCompression compression = TestCompression::zstd);

}  // namespace navora
