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
  // Target of a symbolic link: relative, and inside the archive's first folder.
  std::string target = {};
};

// Reads a compressed tar archive member by member. Refuses absolute paths, paths and links that
// lead out of the archive, hard links, devices and other special files. Errors are sentences
// without a full stop.
class ArchiveReader {
 public:
  static Expected<ArchiveReader, std::string> open(const std::filesystem::path& file);

  // Returns the next member; std::nullopt at the end.
  Expected<std::optional<ArchiveMember>, std::string> next();
  // Reads more of the present member's content. Returns the number of bytes, 0 at its end.
  Expected<std::size_t, std::string> read(std::span<char> buffer);
  // Returns how many bytes of the archive file have been read.
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
