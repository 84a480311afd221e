#pragma once

#include <cerrno>
#include <filesystem>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace navora {

// Owns a POSIX file descriptor.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  // Takes ownership; -1, the error value of open() and its kin, makes an empty one.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}
  FileDescriptor& operator=(FileDescriptor other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  // Keeps errno, which may still hold the reason why a call failed.
  ~FileDescriptor() {
    const int error = errno;
    if (descriptor_ >= 0) ::close(descriptor_);
    errno = error;
  }

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }

  // Writes all bytes. Returns false on failure, with the reason in errno.
  bool write(std::string_view bytes) const;
  // Waits until the file's content, or the folder's entries, are on the disk. Returns false on
  // failure, with the reason in errno.
  bool flush() const;

 private:
  int descriptor_ = -1;
};

// Waits until the names that were made, changed or removed in a folder are on the disk: without
// that, a power cut may undo them. Succeeds on file systems that cannot flush a folder. Returns
// false on failure, with the reason in errno.
bool flushFolder(const std::filesystem::path& folder);

}  // namespace navora
