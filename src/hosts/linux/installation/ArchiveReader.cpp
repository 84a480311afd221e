#include "hosts/linux/installation/ArchiveReader.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include <archive.h>
#include <archive_entry.h>

namespace navora {
namespace {

constexpr std::size_t blockSize = 64 * 1024;
constexpr std::size_t maximumPathLength = 1024;

// Returns the path without "." and trailing slashes; std::nullopt if it is absolute or contains
// "..".
std::optional<std::filesystem::path> safePath(const char* text) {
  if (text == nullptr || std::string_view(text).size() > maximumPathLength) return std::nullopt;
  const std::filesystem::path written(text);
  if (written.is_absolute()) return std::nullopt;
  std::filesystem::path path;
  for (const std::filesystem::path& part : written) {
    if (part == "..") return std::nullopt;
    if (!part.empty() && part != ".") path /= part;
  }
  return path;
}

// Returns whether a link's target stays below the archive's first folder. Refuses ".." after a
// name: where "folder/.." leads depends on whether the folder is a link.
bool staysInside(const std::filesystem::path& link, const std::string& target) {
  const std::filesystem::path relative(target);
  if (target.empty() || target.size() > maximumPathLength || relative.is_absolute()) return false;
  auto depth = std::distance(link.begin(), link.end()) - 1;
  bool descends = false;
  for (const std::filesystem::path& part : relative) {
    if (part != "..") {
      descends = descends || (!part.empty() && part != ".");
    } else if (descends || --depth < 1) {
      return false;
    }
  }
  return depth >= 1;
}

std::string quoted(const char* text) {
  return text == nullptr ? "a member without a name" : "\"" + std::string(text) + "\"";
}

// Returns std::nullopt for a member that is not allowed in an update.
std::optional<ArchiveMember> memberFrom(archive_entry* entry) {
  const auto path = safePath(archive_entry_pathname(entry));
  if (!path || archive_entry_hardlink(entry) != nullptr) return std::nullopt;
  ArchiveMember member{.path = *path};
  // Skipping the content of other members could take unlimited time.
  if (archive_entry_filetype(entry) != AE_IFREG && archive_entry_size(entry) > 0)
    return std::nullopt;
  switch (archive_entry_filetype(entry)) {
    case AE_IFREG:
      member.isExecutable = (archive_entry_perm(entry) & 0100) != 0;
      break;
    case AE_IFDIR:
      member.kind = ArchiveMember::Kind::folder;
      break;
    case AE_IFLNK: {
      member.kind = ArchiveMember::Kind::symbolicLink;
      const char* target = archive_entry_symlink(entry);
      if (target == nullptr || !staysInside(*path, target)) return std::nullopt;
      member.target = target;
      break;
    }
    default:
      return std::nullopt;
  }
  return member;
}

}  // namespace

void ArchiveReader::Close::operator()(archive* reader) const {
  archive_read_free(reader);
}

Expected<ArchiveReader, std::string> ArchiveReader::open(const std::filesystem::path& file) {
  ArchiveReader reader{ArchivePtr(archive_read_new())};
  archive* native = reader.reader_.get();
  archive_read_support_format_tar(native);
  archive_read_support_filter_gzip(native);
  archive_read_support_filter_xz(native);
  archive_read_support_filter_zstd(native);
  if (archive_read_open_filename(native, file.c_str(), blockSize) != ARCHIVE_OK)
    return Unexpected(reader.failure("The archive cannot be opened"));
  return reader;
}

Expected<std::optional<ArchiveMember>, std::string> ArchiveReader::next() {
  archive_entry* entry = nullptr;
  while (true) {
    const int status = archive_read_next_header(reader_.get(), &entry);
    if (status == ARCHIVE_EOF) return std::optional<ArchiveMember>();
    if (status != ARCHIVE_OK) return Unexpected(failure("The archive is damaged"));
    auto member = memberFrom(entry);
    if (!member) {
      return Unexpected("The archive holds " + quoted(archive_entry_pathname(entry)) +
                        ", which has no place in an update");
    }
    if (!member->path.empty()) return member;
    // The root folder "./" may come once.
    if (member->kind != ArchiveMember::Kind::folder || std::exchange(rootSeen_, true))
      return Unexpected(std::string("The archive holds itself"));
  }
}

Expected<std::size_t, std::string> ArchiveReader::read(std::span<char> buffer) {
  const la_ssize_t size = archive_read_data(reader_.get(), buffer.data(), buffer.size());
  if (size < 0) return Unexpected(failure("The archive is damaged"));
  return static_cast<std::size_t>(size);
}

std::uint64_t ArchiveReader::bytesConsumed() const {
  return static_cast<std::uint64_t>(
      std::max<la_int64_t>(0, archive_filter_bytes(reader_.get(), -1)));
}

std::string ArchiveReader::failure(const std::string& what) const {
  const char* reason = archive_error_string(reader_.get());
  return reason == nullptr ? what : what + " (" + reason + ")";
}

}  // namespace navora
