#include "platform/FileDescriptor.h"

#include <cerrno>
#include <cstddef>

#include <fcntl.h>

namespace navora {

bool FileDescriptor::write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool FileDescriptor::flush() const {
#ifdef F_FULLFSYNC
  // On Apple's systems fsync() leaves the data in the drive's own cache. Some file systems support
  // only fsync().
  if (::fcntl(descriptor_, F_FULLFSYNC) == 0) return true;
#endif
  return ::fsync(descriptor_) == 0;
}

bool flushFolder(const std::filesystem::path& folder) {
  const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // Some network file systems cannot flush a folder.
  return descriptor && (descriptor.flush() || errno == EINVAL || errno == ENOTSUP);
}

}  // namespace navora
