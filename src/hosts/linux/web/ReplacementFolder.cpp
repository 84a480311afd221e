#include "hosts/linux/web/ReplacementFolder.h"

#include <cerrno>
#include <cstdlib>
#include <string>

#include "hosts/linux/system/PlatformErrors.h"

namespace navora {

Expected<std::filesystem::path, PlatformError> makeReplacementFolder(
    const std::filesystem::path& destination) {
  std::string folder = (destination.parent_path() / ".navora-download-XXXXXX").string();
  // Creates the folder for the user only, under a name that did not exist.
  if (::mkdtemp(folder.data()) == nullptr) return Unexpected(platformErrorFromErrno(errno));
  return std::filesystem::path(folder);
}

}  // namespace navora
