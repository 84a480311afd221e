#pragma once

#include <string_view>
#include <utility>

#include <unistd.h>

namespace navora {

// Owns an open file of the system.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  // -1 for none, as the system's calls have it.
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

  // Everything; otherwise false, and errno says why.
  bool write(std::string_view bytes) const;

 private:
  int descriptor_ = -1;
};

}  // namespace navora
