#include "hosts/linux/installation/UpdateUnpacker.h"

#include <cerrno>
#include <cstddef>
#include <string>
#include <system_error>
#include <unordered_set>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/linux/installation/ArchiveReader.h"
#include "hosts/linux/installation/UpdateError.h"
#include "platform/FileDescriptor.h"

namespace navora {
namespace {

constexpr std::size_t bufferSize = 256 * 1024;
constexpr mode_t folderMode = 0755;
constexpr mode_t fileMode = 0644;
constexpr mode_t executableMode = 0755;

PlatformError unpackingError(const std::string& description) {
  return updateError(UpdateStage::unpacking, description);
}

PlatformError systemFailure(const ArchiveMember& member) {
  const int reason = errno;
  return systemUpdateError(UpdateStage::unpacking,
                           "\"" + member.path.string() + "\" cannot be made", reason);
}

class Unpacking {
 public:
  Unpacking(ArchiveReader reader, std::uint64_t archiveSize, FileDescriptor folder,
            const UpdateUnpacker::Limits& limits, const UpdateUnpacker::Progress& progress,
            const std::atomic<bool>& cancelled)
      : reader_(std::move(reader)),
        archiveSize_(archiveSize),
        folder_(std::move(folder)),
        limits_(limits),
        progress_(progress),
        cancelled_(cancelled) {}

  std::optional<PlatformError> run() {
    while (true) {
      auto member = reader_.next();
      if (!member) return unpackingError(member.error());
      if (!*member) return makeLinks();
      if (cancelled_) return unpackingError("Cancelled");
      if (++members_ > limits_.members) return unpackingError("The archive holds too many files");
      if (auto error = make(**member)) return error;
    }
  }

 private:
  std::optional<PlatformError> make(const ArchiveMember& member) {
    switch (member.kind) {
      case ArchiveMember::Kind::folder:
        return makeFolder(member, member.path);
      case ArchiveMember::Kind::symbolicLink:
        links_.push_back(member);
        linkPaths_.insert(member.path.string());
        return std::nullopt;
      case ArchiveMember::Kind::file:
        break;
    }
    if (auto error = makeFolder(member, member.path.parent_path())) return error;
    return makeFile(member);
  }

  // Makes the folder and its parents. Fails if one exists and is not a folder.
  std::optional<PlatformError> makeFolder(const ArchiveMember& member,
                                          const std::filesystem::path& path) {
    std::filesystem::path partial;
    for (const std::filesystem::path& part : path) {
      partial /= part;
      if (::mkdirat(folder_.get(), partial.c_str(), folderMode) == 0) continue;
      if (errno != EEXIST) return systemFailure(member);
      struct stat status{};
      if (::fstatat(folder_.get(), partial.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0)
        return systemFailure(member);
      if (!S_ISDIR(status.st_mode)) {
        errno = ENOTDIR;
        return systemFailure(member);
      }
    }
    return std::nullopt;
  }

  std::optional<PlatformError> makeFile(const ArchiveMember& member) {
    const FileDescriptor file(::openat(folder_.get(), member.path.c_str(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                                       fileMode));
    if (!file) return systemFailure(member);
    while (true) {
      if (cancelled_) return unpackingError("Cancelled");
      const auto size = reader_.read(buffer_);
      if (!size) return unpackingError(size.error());
      if (*size == 0) break;
      bytes_ += *size;
      if (bytes_ > limits_.bytes) return unpackingError("The archive holds too much");
      if (!file.write({buffer_.data(), *size})) return systemFailure(member);
      reportProgress();
    }
    if (::fchmod(file.get(), member.isExecutable ? executableMode : fileMode) != 0)
      return systemFailure(member);
    return std::nullopt;
  }

  // Returns whether a parent of the member is a link of the archive.
  bool liesBehindALink(const ArchiveMember& member) const {
    for (auto folder = member.path.parent_path(); !folder.empty(); folder = folder.parent_path()) {
      if (linkPaths_.contains(folder.string())) return true;
    }
    return false;
  }

  std::optional<PlatformError> makeLinks() {
    for (const ArchiveMember& link : links_) {
      if (cancelled_) return unpackingError("Cancelled");
      if (liesBehindALink(link))
        return unpackingError("The archive holds \"" + link.path.string() + "\" behind a link");
      if (auto error = makeFolder(link, link.path.parent_path())) return error;
      if (::symlinkat(link.target.c_str(), folder_.get(), link.path.c_str()) != 0)
        return systemFailure(link);
    }
    // Writes the files to disk before the exchange, so that a power failure cannot leave it
    // incomplete.
    if (::syncfs(folder_.get()) != 0)
      return systemUpdateError(UpdateStage::unpacking, "The files cannot be written", errno);
    progress_(1);
    return std::nullopt;
  }

  void reportProgress() {
    constexpr double step = 0.01;
    const double progress =
        static_cast<double>(reader_.bytesConsumed()) / static_cast<double>(archiveSize_);
    if (progress < reported_ + step) return;
    reported_ = progress;
    progress_(progress);
  }

  ArchiveReader reader_;
  const std::uint64_t archiveSize_;
  const FileDescriptor folder_;
  const UpdateUnpacker::Limits limits_;
  const UpdateUnpacker::Progress& progress_;
  const std::atomic<bool>& cancelled_;
  std::vector<ArchiveMember> links_;
  std::unordered_set<std::string> linkPaths_;
  std::vector<char> buffer_ = std::vector<char>(bufferSize);
  std::uint64_t members_ = 0;
  std::uint64_t bytes_ = 0;
  double reported_ = 0;
};

}  // namespace

std::optional<PlatformError> UpdateUnpacker::unpack(const std::filesystem::path& archive,
                                                    const std::filesystem::path& folder,
                                                    const Limits& limits, const Progress& progress,
                                                    const std::atomic<bool>& cancelled) {
  auto reader = ArchiveReader::open(archive);
  if (!reader) return unpackingError(reader.error());
  std::error_code error;
  const std::uint64_t size = std::filesystem::file_size(archive, error);
  FileDescriptor root(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (error || !root) {
    return systemUpdateError(UpdateStage::unpacking, "The folder for the update cannot be used",
                             error ? error.value() : errno);
  }
  return Unpacking(*std::move(reader), size, std::move(root), limits, progress, cancelled).run();
}

}  // namespace navora
