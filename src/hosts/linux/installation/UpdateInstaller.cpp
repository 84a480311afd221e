#include "hosts/linux/installation/UpdateInstaller.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "hosts/linux/installation/FolderExchange.h"

namespace navora {
namespace {

// Starts a program with this process's environment, which was inherited from the application.
std::optional<pid_t> start(const std::filesystem::path& program) {
  sigset_t defaults;
  ::sigemptyset(&defaults);
  ::sigaddset(&defaults, SIGPIPE);
  posix_spawnattr_t attributes;
  if (::posix_spawnattr_init(&attributes) != 0) return std::nullopt;
  ::posix_spawnattr_setsigdefault(&attributes, &defaults);
  ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  std::string name = program.string();
  std::array<char*, 2> arguments{name.data(), nullptr};
  pid_t process = 0;
  const int error =
      ::posix_spawn(&process, name.c_str(), nullptr, &attributes, arguments.data(), environ);
  ::posix_spawnattr_destroy(&attributes);
  return error == 0 ? std::optional(process) : std::nullopt;
}

// Waits for a byte. Returns false if the peer closes or `patience` elapses first.
bool receivesByte(const FileDescriptor& descriptor, std::chrono::milliseconds patience) {
  pollfd waiting{descriptor.get(), POLLIN, 0};
  const auto deadline = std::chrono::steady_clock::now() + patience;
  int ready = 0;
  do {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    ready = ::poll(&waiting, 1, static_cast<int>(std::max(left.count(), 0L)));
  } while (ready < 0 && errno == EINTR);
  char byte = 0;
  return ready > 0 && ::read(descriptor.get(), &byte, 1) == 1;
}

void report(const PlatformError& error) {
  std::cerr << "Navora updater: " << error.localizedDescription << '\n';
}

}  // namespace

UpdateInstaller::UpdateInstaller(Installation installation, UpdateFolder folder,
                                 FileDescriptor application)
    : installation_(std::move(installation)),
      folder_(std::move(folder)),
      application_(std::move(application)) {}

bool UpdateInstaller::run(std::chrono::milliseconds patience) {
  // The reader of the inherited standard error may have exited; writing must not kill this process.
  std::signal(SIGPIPE, SIG_IGN);
  waitForApplication();
  if (const auto error = exchangeFolders(folder_.version(), installation_.folder())) {
    report(*error);
    startOldVersion();
    return false;
  }
  if (startNewVersion(patience)) return true;
  std::cerr << "Navora updater: relaunch: The new version does not start\n";
  if (const auto error = exchangeFolders(folder_.version(), installation_.folder())) {
    report(*error);
    startOldVersionWhereItWaits();
  } else {
    startOldVersion();
  }
  return false;
}

void UpdateInstaller::waitForApplication() {
  pollfd waiting{application_.get(), POLLIN, 0};
  while (::poll(&waiting, 1, -1) < 0 && errno == EINTR) {
  }
}

bool UpdateInstaller::startNewVersion(std::chrono::milliseconds patience) {
  std::array<int, 2> ends{};
  // A socket, because MSG_NOSIGNAL keeps the application alive if this process has exited.
  if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return false;
  const FileDescriptor ours(ends[0]);
  // Above the standard descriptors, which may be closed in this process. Inherited by the program.
  FileDescriptor theirs(::fcntl(FileDescriptor(ends[1]).get(), F_DUPFD, STDERR_FILENO + 1));
  if (!theirs) return false;
  ::setenv(startedVariable, std::to_string(theirs.get()).c_str(), 1);
  const auto process = start(installation_.executable());
  ::unsetenv(startedVariable);
  theirs = FileDescriptor();
  if (!process) return false;
  if (receivesByte(ours, patience)) return true;
  ::kill(*process, SIGKILL);
  ::waitpid(*process, nullptr, 0);
  return false;
}

void UpdateInstaller::startOldVersion() {
  {
    // Removed before the application starts, which would see it as left over.
    const UpdateFolder removed(std::move(folder_));
  }
  startOldVersion(installation_.executable());
}

void UpdateInstaller::startOldVersionWhereItWaits() {
  const auto program = Installation::executableIn(folder_.version());
  // The only version that is known to work: keep the folder.
  folder_.handOver();
  startOldVersion(program);
}

void UpdateInstaller::startOldVersion(const std::filesystem::path& program) {
  ::setenv(failedVariable, "1", 1);
  if (!start(program)) std::cerr << "Navora updater: relaunch: The old version does not start\n";
}

}  // namespace navora
