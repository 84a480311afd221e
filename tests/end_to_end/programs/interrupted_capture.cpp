// Loaded into the application before the C library: counts the calls that keep the capture panel's
// draft and those that exchange bytes with the service, and kills the application at one of them.
// The file that NAVORA_INTERRUPT_CONTROL names says at which:
//
//   before 7    before the seventh call since the file was last changed
//   after 7     after it
//
// Without such a file nothing happens. Processes that the application starts are left alone.
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <pthread.h>
#include <stdarg.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include "tests/support/Interposition.h"

using navora::nextFunction;
using navora::openMode;

namespace {

constexpr const char* draftName = "capture-draft.json";
constexpr const char* dataFolder = "/navora";
constexpr int maximumDescriptors = 4096;
constexpr std::size_t maximumControlBytes = 64;

struct Control {
  char text[maximumControlBytes] = {};
  bool before = false;
  long call = 0;
};

// The application calls from its main thread and from the one that writes the draft.
pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
Control control;
long calls = 0;
std::atomic<bool> watched[maximumDescriptors] = {};

bool isTheApplication() {
  return std::strcmp(program_invocation_short_name, "navora") == 0;
}

// Reads the control file; a changed one begins a new count.
void readControl() {
  const char* path = std::getenv("NAVORA_INTERRUPT_CONTROL");
  char text[maximumControlBytes] = {};
  const long file = path == nullptr ? -1 : ::syscall(SYS_openat, AT_FDCWD, path, O_RDONLY, 0);
  if (file >= 0) {
    (void)!::syscall(SYS_read, file, text, sizeof text - 1);
    ::syscall(SYS_close, file);
  }
  if (std::strcmp(text, control.text) == 0) return;
  std::memcpy(control.text, text, sizeof text);
  calls = 0;
  char mode[maximumControlBytes] = {};
  control.call = 0;
  if (std::sscanf(text, "%63s %ld", mode, &control.call) != 2) control.call = 0;
  control.before = std::strcmp(mode, "before") == 0;
}

// Returns whether this is the call to be killed at.
bool isTheCall() {
  pthread_mutex_lock(&mutex);
  readControl();
  const bool isIt = control.call > 0 && ++calls == control.call;
  pthread_mutex_unlock(&mutex);
  return isIt;
}

void die() {
  ::kill(::getpid(), SIGKILL);
}

template <class Call>
auto step(bool counted, const Call& call) {
  const bool isIt = counted && isTheApplication() && isTheCall();
  if (isIt && control.before) die();
  const auto result = call();
  const int error = errno;
  if (isIt) die();
  errno = error;
  return result;
}

bool isDraft(const char* path) {
  return std::strstr(path, draftName) != nullptr;
}

bool isDraftOrItsFolder(const char* path, int flags) {
  return isDraft(path) ||
         ((flags & O_DIRECTORY) != 0 && std::string_view(path).ends_with(dataFolder));
}

bool isWatched(int file) {
  return file >= 0 && file < maximumDescriptors && watched[file];
}

int watch(int file) {
  if (file >= 0 && file < maximumDescriptors) watched[file] = true;
  return file;
}

template <class Call>
int openStep(const char* path, int flags, const Call& call) {
  if (!isDraftOrItsFolder(path, flags)) return call();
  return watch(step(true, call));
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = openMode(flags, arguments);
  va_end(arguments);
  return openStep(path, flags, [&] {
    return nextFunction<int (*)(const char*, int, ...)>("open")(path, flags, mode);
  });
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = openMode(flags, arguments);
  va_end(arguments);
  return openStep(path, flags, [&] {
    return nextFunction<int (*)(const char*, int, ...)>("open64")(path, flags, mode);
  });
}

int close(int file) {
  const bool counted = isWatched(file);
  if (counted) watched[file] = false;
  return step(counted, [&] { return nextFunction<decltype(&::close)>("close")(file); });
}

int fchmod(int file, mode_t mode) noexcept {
  return step(isWatched(file),
              [&] { return nextFunction<decltype(&::fchmod)>("fchmod")(file, mode); });
}

int fsync(int file) {
  return step(isWatched(file), [&] { return nextFunction<decltype(&::fsync)>("fsync")(file); });
}

int rename(const char* from, const char* to) noexcept {
  return step(isDraft(from),
              [&] { return nextFunction<int (*)(const char*, const char*)>("rename")(from, to); });
}

int unlink(const char* path) noexcept {
  return step(isDraft(path), [&] { return nextFunction<decltype(&::unlink)>("unlink")(path); });
}

int connect(int socket, const sockaddr* address, socklen_t size) {
  const bool counted = address->sa_family == AF_INET;
  if (counted) watch(socket);
  return step(counted,
              [&] { return nextFunction<decltype(&::connect)>("connect")(socket, address, size); });
}

ssize_t write(int file, const void* bytes, size_t size) {
  return step(isWatched(file),
              [&] { return nextFunction<decltype(&::write)>("write")(file, bytes, size); });
}

ssize_t read(int file, void* bytes, size_t size) {
  return step(isWatched(file),
              [&] { return nextFunction<decltype(&::read)>("read")(file, bytes, size); });
}

ssize_t send(int socket, const void* bytes, size_t size, int flags) {
  return step(isWatched(socket),
              [&] { return nextFunction<decltype(&::send)>("send")(socket, bytes, size, flags); });
}

ssize_t sendmsg(int socket, const msghdr* message, int flags) {
  return step(isWatched(socket), [&] {
    return nextFunction<decltype(&::sendmsg)>("sendmsg")(socket, message, flags);
  });
}

ssize_t recv(int socket, void* bytes, size_t size, int flags) {
  return step(isWatched(socket),
              [&] { return nextFunction<decltype(&::recv)>("recv")(socket, bytes, size, flags); });
}

ssize_t recvmsg(int socket, msghdr* message, int flags) {
  return step(isWatched(socket), [&] {
    return nextFunction<decltype(&::recvmsg)>("recvmsg")(socket, message, flags);
  });
}

}  // extern "C"
