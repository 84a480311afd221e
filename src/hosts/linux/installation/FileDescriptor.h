#pragma once

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
  ~FileDescriptor() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }

  int get() const { return descriptor_; }
  explicit operator bool() const { return descriptor_ >= 0; }

  // Writes all bytes. Returns false on failure, with the reason in errno.
  bool write(std::string_view bytes) const;

 private:
  int descriptor_ = -1;
};

}  // namespace navora
