#include "hosts/linux/installation/UpdateFolder.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/linux/installation/FolderExchange.h"
#include "hosts/linux/installation/UpdateError.h"

namespace navora {
namespace {

constexpr mode_t privateMode = 0700;

std::filesystem::path folderBeside(const Installation& installation) {
  const auto& folder = installation.folder();
  return folder.parent_path() / ("." + folder.filename().string() + ".update");
}

PlatformError failure(const std::string& description, int reason) {
  return systemUpdateError(UpdateStage::installation, description, reason);
}

// Returns an empty descriptor if there is no such folder of this user or another program has locked
// it.
FileDescriptor lock(const std::filesystem::path& path) {
  FileDescriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat opened{};
  struct stat present{};
  if (!folder || ::flock(folder.get(), LOCK_EX | LOCK_NB) != 0 ||
      ::fstat(folder.get(), &opened) != 0 || opened.st_uid != ::geteuid()) {
    return {};
  }
  // The previous owner of the lock may have removed the folder after open().
  if (::lstat(path.c_str(), &present) != 0 || present.st_ino != opened.st_ino ||
      present.st_dev != opened.st_dev) {
    return {};
  }
  return folder;
}

std::optional<PlatformError> clear(const std::filesystem::path& folder) {
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  while (!error && entry != std::filesystem::directory_iterator()) {
    std::filesystem::remove_all(entry->path(), error);
    if (!error) entry.increment(error);
  }
  if (!error) return std::nullopt;
  return failure("What an earlier update left cannot be removed", error.value());
}

// Fails where folders cannot be exchanged, so that an update fails before the download and not
// after it.
std::optional<PlatformError> tryExchange(const std::filesystem::path& folder) {
  const auto one = folder / "one";
  const auto other = folder / "other";
  if (::mkdir(one.c_str(), privateMode) != 0 || ::mkdir(other.c_str(), privateMode) != 0)
    return failure("No folder can be made beside the application", errno);
  auto error = exchangeFolders(one, other);
  ::rmdir(one.c_str());
  ::rmdir(other.c_str());
  return error;
}

}  // namespace

Expected<UpdateFolder, PlatformError> UpdateFolder::claim(const Installation& installation) {
  const auto path = folderBeside(installation);
  if (::mkdir(path.c_str(), privateMode) != 0 && errno != EEXIST)
    return Unexpected(failure("No folder can be made beside the application", errno));
  FileDescriptor descriptor = lock(path);
  if (!descriptor) {
    return Unexpected(
        updateError(UpdateStage::installation, "Another program is updating the application"));
  }
  UpdateFolder folder(path, std::move(descriptor));
  if (auto error = clear(path)) return Unexpected(*std::move(error));
  if (auto error = tryExchange(path)) return Unexpected(*std::move(error));
  return folder;
}

UpdateFolder UpdateFolder::adopt(std::filesystem::path folder, FileDescriptor lock) {
  return {std::move(folder), std::move(lock)};
}

void UpdateFolder::removeLeftovers(const Installation& installation) {
  const auto path = folderBeside(installation);
  if (FileDescriptor descriptor = lock(path)) UpdateFolder(path, std::move(descriptor));
}

UpdateFolder& UpdateFolder::operator=(UpdateFolder other) noexcept {
  std::swap(path_, other.path_);
  std::swap(lock_, other.lock_);
  return *this;
}

UpdateFolder::~UpdateFolder() {
  std::error_code unused;
  if (lock_) std::filesystem::remove_all(path_, unused);
}

FileDescriptor UpdateFolder::handOver() {
  return std::move(lock_);
}

}  // namespace navora
