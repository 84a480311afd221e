// navora-install-update INSTALLATION FOLDER LOCK APPLICATION
//
// Started by the application shortly before it exits. LOCK and APPLICATION are numbers of inherited
// descriptors: the lock of the update folder FOLDER, and a pidfd of the application.
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "hosts/linux/installation/UpdateInstaller.h"
#include "support/Text.h"

namespace {

// Takes ownership of an inherited descriptor and keeps child processes from inheriting it.
std::optional<navora::FileDescriptor> openFile(std::string_view text) {
  const auto number = navora::wholeNumber<int>(text);
  if (!number || ::fcntl(*number, F_SETFD, FD_CLOEXEC) != 0) return std::nullopt;
  return navora::FileDescriptor(*number);
}

}  // namespace

int main(int argc, char** argv) {
  constexpr int expectedArguments = 5;
  if (argc != expectedArguments) {
    std::cerr << "Navora starts this program when it updates itself.\n";
    return EXIT_FAILURE;
  }
  auto installation = navora::Installation::at(argv[1]);
  auto lock = openFile(argv[3]);
  auto application = openFile(argv[4]);
  if (!installation || !lock || !application) return EXIT_FAILURE;
  // Closing the terminal that the application was started from must not end this process.
  ::setsid();
  navora::UpdateInstaller installer(*std::move(installation),
                                    navora::UpdateFolder::adopt(argv[2], *std::move(lock)),
                                    *std::move(application));
  return installer.run() ? EXIT_SUCCESS : EXIT_FAILURE;
}
