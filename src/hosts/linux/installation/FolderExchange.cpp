#include "hosts/linux/installation/FolderExchange.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>

#include "hosts/linux/installation/UpdateError.h"
#include "platform/FileDescriptor.h"

namespace navora {

std::optional<PlatformError> exchangeFolders(const std::filesystem::path& one,
                                             const std::filesystem::path& other) {
  if (::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) != 0) {
    return systemUpdateError(UpdateStage::installation, "The new version cannot take its place",
                             errno);
  }
  // Makes the exchange durable. Without it a power failure may undo it, but never halve it.
  for (const auto& folder : {one.parent_path(), other.parent_path()})
    flushFolder(folder);
  return std::nullopt;
}

}  // namespace navora
