#include "platform/PosixFileReplacement.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "platform/FileDescriptor.h"

namespace navora {
namespace {

// Fails with EEXIST if there is a file of the new name.
bool renameToNewName(const std::filesystem::path& from, const std::filesystem::path& to) {
#ifdef RENAME_EXCL
  if (::renamex_np(from.c_str(), to.c_str(), RENAME_EXCL) == 0) return true;
  const bool unsupported = errno == ENOTSUP;
#else
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
  const bool unsupported = errno == EINVAL || errno == ENOSYS;
#endif
  if (!unsupported) return false;
  // The file system cannot do both in one step: another program may make the file in between.
  if (::access(to.c_str(), F_OK) == 0) {
    errno = EEXIST;
    return false;
  }
  return ::rename(from.c_str(), to.c_str()) == 0;
}

// Returns 0 or an errno value.
int moveToDestination(const std::filesystem::path& file, const std::filesystem::path& destination,
                      bool replaces) {
  const FileDescriptor content(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!content || !content.flush()) return errno;
  const bool moved = replaces ? ::rename(file.c_str(), destination.c_str()) == 0
                              : renameToNewName(file, destination);
  if (!moved) return errno;
  // The file is in place, whether or not its new name is on the disk already.
  flushFolder(destination.parent_path());
  return 0;
}

}  // namespace

Expected<std::unique_ptr<FileReplacement>, PlatformError> PosixFileReplacement::make(
    const std::filesystem::path& destination, MainQueue& mainQueue, const MakeFolder& makeFolder,
    SystemError systemError) {
  std::error_code missing;
  auto target = std::filesystem::canonical(destination, missing);
  const bool replaces = !missing;
  if (!replaces) target = destination;
  auto folder = makeFolder(target);
  if (!folder) return Unexpected(std::move(folder).error());
  return std::unique_ptr<FileReplacement>(new PosixFileReplacement(
      std::move(target), replaces, *std::move(folder), mainQueue, systemError));
}

PosixFileReplacement::PosixFileReplacement(std::filesystem::path destination, bool replaces,
                                           std::filesystem::path folder, MainQueue& mainQueue,
                                           SystemError systemError)
    : destination_(std::move(destination)),
      replaces_(replaces),
      folder_(std::move(folder)),
      file_(folder_ / "content"),
      mainQueue_(mainQueue),
      systemError_(systemError) {}

PosixFileReplacement::~PosixFileReplacement() {
  if (worker_.joinable()) worker_.join();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void PosixFileReplacement::putInPlace(Completion completion) {
  completion_ = std::move(completion);
  const auto move = [this] {
    result_ = moveToDestination(file_, destination_, replaces_);
    mainQueue_.async(ended_);
  };
  try {
    worker_ = std::thread(move);
  } catch (const std::system_error&) {
    // The system has no thread left: better a screen that waits than a file that is lost.
    move();
  }
}

void PosixFileReplacement::ended() {
  // The completion may destroy this object.
  const Completion completion = std::move(completion_);
  completion(result_ == 0 ? std::nullopt : std::optional(systemError_(result_)));
}

}  // namespace navora
