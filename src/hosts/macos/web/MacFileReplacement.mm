#include "hosts/macos/web/MacFileReplacement.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "hosts/macos/system/Conversions.h"

namespace navora {

namespace {

NSError* errorFromErrno() {
  return [NSError errorWithDomain:NSPOSIXErrorDomain code:errno userInfo:nil];
}

bool flushDescriptor(int descriptor) {
// fsync() on macOS leaves the data in the drive's own cache. Not every file system knows the other
// way, which only macOS defines.
#ifdef F_FULLFSYNC
  if (::fcntl(descriptor, F_FULLFSYNC) == 0) return true;
#endif
  return ::fsync(descriptor) == 0;
}

NSError* _Nullable flush(const std::filesystem::path& path) {
  const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor < 0) return errorFromErrno();
  NSError* error = flushDescriptor(descriptor) ? nil : errorFromErrno();
  ::close(descriptor);
  return error;
}

NSError* _Nullable renameOver(const std::filesystem::path& from, const std::filesystem::path& to) {
  return std::rename(from.c_str(), to.c_str()) == 0 ? nil : errorFromErrno();
}

NSError* _Nullable moveToNewName(const std::filesystem::path& from,
                                 const std::filesystem::path& to) {
  NSError* error = nil;
  // Fails if a file with that name exists.
  [[NSFileManager defaultManager] moveItemAtURL:toFileURL(from) toURL:toFileURL(to) error:&error];
  return error;
}

NSError* _Nullable moveToDestination(const std::filesystem::path& file,
                                     const std::filesystem::path& destination, bool replaces) {
  if (NSError* error = flush(file); error != nil) return error;
  NSError* error = replaces ? renameOver(file, destination) : moveToNewName(file, destination);
  // The rename has happened whether or not the file system can flush a folder.
  if (error == nil) flush(destination.parent_path());
  return error;
}

}  // namespace

Expected<std::unique_ptr<FileReplacement>, PlatformError> MacFileReplacement::make(
    const std::filesystem::path& destination) {
  std::error_code missing;
  auto target = std::filesystem::canonical(destination, missing);
  const bool replaces = !missing;
  if (!replaces) target = destination;
  // The system's folder may be anywhere on the volume, so making it does not tell.
  if (::access(target.parent_path().c_str(), F_OK) != 0) {
    return Unexpected(toPlatformError(errorFromErrno()));
  }
  NSError* error = nil;
  NSURL* folder = [[NSFileManager defaultManager] URLForDirectory:NSItemReplacementDirectory
                                                         inDomain:NSUserDomainMask
                                                appropriateForURL:toFileURL(target)
                                                           create:YES
                                                            error:&error];
  if (folder == nil) return Unexpected(toPlatformError(error));
  return std::unique_ptr<FileReplacement>(
      new MacFileReplacement(std::move(target), replaces, folder));
}

MacFileReplacement::MacFileReplacement(std::filesystem::path destination, bool replaces,
                                       NSURL* _Nonnull folder)
    : destination_(std::move(destination)),
      replaces_(replaces),
      folder_(folder),
      file_(toPath(folder) / "content") {}

MacFileReplacement::~MacFileReplacement() {
  if (worker_.joinable()) worker_.join();
  [[NSFileManager defaultManager] removeItemAtURL:folder_ error:nil];
}

void MacFileReplacement::putInPlace(Completion completion) {
  completion_ = std::move(completion);
  worker_ = std::thread([this] {
    @autoreleasepool {
      error_ = moveToDestination(file_, destination_, replaces_);
      const std::function<void()> ended = ended_;
      dispatch_async(dispatch_get_main_queue(), ^{
        ended();
      });
    }
  });
}

void MacFileReplacement::ended() {
  // The completion may destroy this object.
  const Completion completion = std::move(completion_);
  completion(error_ == nil ? std::nullopt : std::optional(toPlatformError(error_)));
}

}  // namespace navora
