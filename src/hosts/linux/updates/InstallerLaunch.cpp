#include "hosts/linux/updates/InstallerLaunch.h"

#include <array>
#include <cerrno>
#include <string>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "hosts/linux/installation/UpdateError.h"

namespace navora {
namespace {

// Descriptor numbers in the installer's process.
constexpr int lockDescriptor = 3;
constexpr int applicationDescriptor = 4;

// File actions that give the installer its descriptors. They are duplicated above the target
// numbers first, so that no dup2 overwrites one that is still needed.
class SpawnFiles {
 public:
  SpawnFiles(const FileDescriptor& lock, const FileDescriptor& application)
      : lock_(::fcntl(lock.get(), F_DUPFD_CLOEXEC, applicationDescriptor + 1)),
        application_(::fcntl(application.get(), F_DUPFD_CLOEXEC, applicationDescriptor + 1)) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_adddup2(&actions_, lock_.get(), lockDescriptor);
    posix_spawn_file_actions_adddup2(&actions_, application_.get(), applicationDescriptor);
  }
  ~SpawnFiles() { posix_spawn_file_actions_destroy(&actions_); }
  SpawnFiles(const SpawnFiles&) = delete;
  SpawnFiles& operator=(const SpawnFiles&) = delete;

  const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  FileDescriptor lock_;
  FileDescriptor application_;
  posix_spawn_file_actions_t actions_{};
};

}  // namespace

std::optional<PlatformError> launchInstaller(const Installation& installation,
                                             UpdateFolder folder) {
  // A pidfd becomes readable when the whole process has exited, its bus connection included. A pipe
  // would be closed while other descriptors are still open.
  const FileDescriptor application(static_cast<int>(::syscall(SYS_pidfd_open, ::getpid(), 0)));
  if (!application)
    return systemUpdateError(UpdateStage::installation, "The installer cannot wait", errno);

  std::array<std::string, 5> words{
      (installation.folder() / "libexec" / "navora" / "navora-install-update").string(),
      installation.folder().string(), folder.path().string(), std::to_string(lockDescriptor),
      std::to_string(applicationDescriptor)};
  std::array<char*, words.size() + 1> arguments{};
  for (std::size_t index = 0; index < words.size(); ++index)
    arguments[index] = words[index].data();

  FileDescriptor lock = folder.handOver();
  const SpawnFiles files(lock, application);
  pid_t process = 0;
  const int error = ::posix_spawn(&process, words[0].c_str(), files.actions(), nullptr,
                                  arguments.data(), environ);
  if (error != 0) {
    // Removes the folder: the adopted object is destroyed at once.
    UpdateFolder::adopt(folder.path(), std::move(lock));
    return systemUpdateError(UpdateStage::installation, "The installer does not start", error);
  }
  return std::nullopt;
}

}  // namespace navora
