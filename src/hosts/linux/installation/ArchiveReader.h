#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "support/Expected.h"

struct archive;

namespace navora {

// One file, folder or link of an archive.
struct ArchiveMember {
  enum class Kind { file, folder, symbolicLink };

  Kind kind = Kind::file;
  // Relative, without "." or "..", and not empty.
  std::filesystem::path path;
  bool isExecutable = false;
  // Of a symbolic link: relative, and not leading out of the archive's first folder.
  std::string target = {};
};

// Reads a compressed tar archive member by member, and refuses whatever has no place in an
// update: absolute paths and paths or links that lead out, devices, hard links, special files.
// Every failure is a sentence without its full stop.
class ArchiveReader {
 public:
  static Expected<ArchiveReader, std::string> open(const std::filesystem::path& file);

  // The next member, or none at the end.
  Expected<std::optional<ArchiveMember>, std::string> next();
  // More of the member's content into `buffer`; 0 at its end.
  Expected<std::size_t, std::string> read(std::span<char> buffer);
  // How much of the file has been read, in bytes.
  std::uint64_t bytesConsumed() const;

 private:
  struct Close {
    void operator()(archive* reader) const;
  };
  using ArchivePtr = std::unique_ptr<archive, Close>;

  explicit ArchiveReader(ArchivePtr reader) : reader_(std::move(reader)) {}
  std::string failure(const std::string& what) const;

  ArchivePtr reader_;
  bool rootSeen_ = false;
};

}  // namespace navora
