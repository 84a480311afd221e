#include "hosts/macos/web/ReplacementFolder.h"

#include <cerrno>

#import <Foundation/Foundation.h>
#include <unistd.h>

#include "hosts/macos/system/Conversions.h"

namespace navora {

Expected<std::filesystem::path, PlatformError> makeReplacementFolder(
    const std::filesystem::path& destination) {
  // The system's folder may be anywhere on the volume, so making it does not tell.
  if (::access(destination.parent_path().c_str(), F_OK) != 0)
    return Unexpected(platformErrorFromErrno(errno));
  NSError* error = nil;
  NSURL* folder = [[NSFileManager defaultManager] URLForDirectory:NSItemReplacementDirectory
                                                         inDomain:NSUserDomainMask
                                                appropriateForURL:toFileURL(destination)
                                                           create:YES
                                                            error:&error];
  if (folder == nil) return Unexpected(toPlatformError(error));
  return toPath(folder);
}

}  // namespace navora
