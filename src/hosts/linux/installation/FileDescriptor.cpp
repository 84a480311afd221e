#include "hosts/linux/installation/FileDescriptor.h"

#include <cerrno>
#include <cstddef>

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

}  // namespace navora
