#include "hosts/linux/web/LinuxFileReplacement.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

namespace navora {
namespace {

constexpr const char* folderTemplate = ".navora-download-XXXXXX";

PlatformError systemError(int code) {
  return {"POSIX", code, g_strerror(code)};
}

// The following return 0 or an errno value.

int flush(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return errno;
  const int result = ::fsync(descriptor) == 0 ? 0 : errno;
  ::close(descriptor);
  return result;
}

int renameOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  return ::rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

int renameToNewName(const std::filesystem::path& from, const std::filesystem::path& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // The file system does not know RENAME_NOREPLACE: the check leaves a moment for another program.
  return ::access(to.c_str(), F_OK) == 0 ? EEXIST : renameOver(from, to);
}

int moveToDestination(const std::filesystem::path& file, const std::filesystem::path& destination,
                      bool replaces) {
  if (const int error = flush(file); error != 0) return error;
  const int error = replaces ? renameOver(file, destination) : renameToNewName(file, destination);
  // The rename has happened whether or not the file system can flush a folder.
  if (error == 0) flush(destination.parent_path());
  return error;
}

}  // namespace

Expected<std::unique_ptr<FileReplacement>, PlatformError> LinuxFileReplacement::make(
    const std::filesystem::path& destination, MainQueue& mainQueue) {
  std::error_code error;
  auto target = std::filesystem::canonical(destination, error);
  const bool replaces = !error;
  if (!replaces) target = destination;
  std::string folder = (target.parent_path() / folderTemplate).string();
  // Creates the folder for the user only, under a name that did not exist.
  if (::mkdtemp(folder.data()) == nullptr) return Unexpected(systemError(errno));
  return std::unique_ptr<FileReplacement>(
      new LinuxFileReplacement(std::move(target), replaces, std::move(folder), mainQueue));
}

LinuxFileReplacement::LinuxFileReplacement(std::filesystem::path destination, bool replaces,
                                           std::filesystem::path folder, MainQueue& mainQueue)
    : destination_(std::move(destination)),
      replaces_(replaces),
      folder_(std::move(folder)),
      file_(folder_ / "content"),
      mainQueue_(mainQueue) {}

LinuxFileReplacement::~LinuxFileReplacement() {
  if (worker_.joinable()) worker_.join();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void LinuxFileReplacement::putInPlace(Completion completion) {
  completion_ = std::move(completion);
  worker_ = std::thread([this] {
    result_ = moveToDestination(file_, destination_, replaces_);
    mainQueue_.async(ended_);
  });
}

void LinuxFileReplacement::ended() {
  // The completion may destroy this object.
  const Completion completion = std::move(completion_);
  completion(result_ == 0 ? std::nullopt : std::optional(systemError(result_)));
}

}  // namespace navora
