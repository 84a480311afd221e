#include "hosts/linux/updates/UpdateLaunch.h"

#include <cstdlib>
#include <string_view>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/linux/installation/UpdateInstaller.h"
#include "support/Text.h"

namespace navora {
namespace {

// Parses a descriptor number and takes ownership of it. Returns an empty one unless it is an open
// socket other than the standard files.
FileDescriptor openSocket(std::string_view text) {
  const auto number = wholeNumber<int>(text);
  struct stat status{};
  if (!number || *number <= STDERR_FILENO || ::fstat(*number, &status) != 0 ||
      !S_ISSOCK(status.st_mode)) {
    return {};
  }
  ::fcntl(*number, F_SETFD, FD_CLOEXEC);
  return FileDescriptor(*number);
}

}  // namespace

UpdateLaunch::UpdateLaunch() {
  if (const char* started = std::getenv(UpdateInstaller::startedVariable))
    started_ = openSocket(started);
  failed_ = std::getenv(UpdateInstaller::failedVariable) != nullptr;
  ::unsetenv(UpdateInstaller::startedVariable);
  ::unsetenv(UpdateInstaller::failedVariable);
}

void UpdateLaunch::confirm() {
  constexpr char byte = 1;
  // Fails only if the installer has exited.
  if (started_) ::send(started_.get(), &byte, sizeof byte, MSG_NOSIGNAL);
  started_ = {};
}

}  // namespace navora
