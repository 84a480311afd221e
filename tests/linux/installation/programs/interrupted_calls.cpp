// Loaded into navora_update_step before the C library: counts the calls that change files or start
// programs, and interrupts the process at one of them, as the environment says:
//
//   NAVORA_INTERRUPT_CALL  the number of the call, from 1
//   NAVORA_INTERRUPT_MODE  "before" or "after": the process is killed there; "fail": the call fails
//
// fsync and syncfs are counted but not executed: killing a process loses no written data.
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <spawn.h>
#include <stdarg.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/Interposition.h"

using navora::nextFunction;
using navora::openMode;

namespace {

constexpr int failure = EIO;

enum class Mode { none, before, after, fail };

struct Plan {
  Mode mode = Mode::none;
  long call = 0;
};

Plan makePlan() {
  const char* call = std::getenv("NAVORA_INTERRUPT_CALL");
  const char* mode = std::getenv("NAVORA_INTERRUPT_MODE");
  // Programs that it starts inherit the environment.
  if (call == nullptr || mode == nullptr ||
      std::strcmp(program_invocation_short_name, "navora_update_step") != 0) {
    return {};
  }
  const bool isBefore = std::strcmp(mode, "before") == 0;
  const bool isAfter = std::strcmp(mode, "after") == 0;
  return {isBefore ? Mode::before : isAfter ? Mode::after : Mode::fail, std::atol(call)};
}

// Returns what to do at the present call.
Mode modeOfNextCall() {
  static const Plan plan = makePlan();
  static long calls = 0;
  return ++calls == plan.call ? plan.mode : Mode::none;
}

void die() {
  ::kill(::getpid(), SIGKILL);
}

// Executes a call that changes something, unless it is the one to fail; then returns `failed`.
template <class Call, class Result>
Result step(const Call& call, Result failed) {
  const Mode mode = modeOfNextCall();
  if (mode == Mode::before) die();
  if (mode == Mode::fail) {
    errno = failure;
    return failed;
  }
  const Result result = call();
  if (mode == Mode::after) die();
  return result;
}

bool changesFiles(int flags) {
  return (flags & (O_CREAT | O_WRONLY | O_RDWR | O_TRUNC)) != 0;
}

int openNext(const char* name, const char* path, int flags, mode_t mode) {
  const auto call = [&] {
    return nextFunction<int (*)(const char*, int, ...)>(name)(path, flags, mode);
  };
  return changesFiles(flags) ? step(call, -1) : call();
}

int openAtNext(const char* name, int folder, const char* path, int flags, mode_t mode) {
  const auto call = [&] {
    return nextFunction<int (*)(int, const char*, int, ...)>(name)(folder, path, flags, mode);
  };
  return changesFiles(flags) ? step(call, -1) : call();
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = openMode(flags, arguments);
  va_end(arguments);
  return openNext("open", path, flags, mode);
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = openMode(flags, arguments);
  va_end(arguments);
  return openNext("open64", path, flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = openMode(flags, arguments);
  va_end(arguments);
  return openAtNext("openat", folder, path, flags, mode);
}

int openat64(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = openMode(flags, arguments);
  va_end(arguments);
  return openAtNext("openat64", folder, path, flags, mode);
}

int mkdir(const char* path, mode_t mode) noexcept {
  return step([&] { return nextFunction<decltype(&::mkdir)>("mkdir")(path, mode); }, -1);
}

int mkdirat(int folder, const char* path, mode_t mode) noexcept {
  return step([&] { return nextFunction<decltype(&::mkdirat)>("mkdirat")(folder, path, mode); },
              -1);
}

int rename(const char* from, const char* to) noexcept {
  return step([&] { return nextFunction<int (*)(const char*, const char*)>("rename")(from, to); },
              -1);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
  return step(
      [&] {
        return nextFunction<int (*)(int, const char*, int, const char*)>("renameat")(
            fromFolder, from, toFolder, to);
      },
      -1);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned flags) noexcept {
  return step(
      [&] {
        return nextFunction<int (*)(int, const char*, int, const char*, unsigned)>("renameat2")(
            fromFolder, from, toFolder, to, flags);
      },
      -1);
}

int unlink(const char* path) noexcept {
  return step([&] { return nextFunction<decltype(&::unlink)>("unlink")(path); }, -1);
}

int unlinkat(int folder, const char* path, int flags) noexcept {
  return step([&] { return nextFunction<decltype(&::unlinkat)>("unlinkat")(folder, path, flags); },
              -1);
}

int remove(const char* path) noexcept {
  return step([&] { return nextFunction<int (*)(const char*)>("remove")(path); }, -1);
}

int rmdir(const char* path) noexcept {
  return step([&] { return nextFunction<decltype(&::rmdir)>("rmdir")(path); }, -1);
}

int symlink(const char* target, const char* path) noexcept {
  return step([&] { return nextFunction<decltype(&::symlink)>("symlink")(target, path); }, -1);
}

int symlinkat(const char* target, int folder, const char* path) noexcept {
  return step(
      [&] { return nextFunction<decltype(&::symlinkat)>("symlinkat")(target, folder, path); }, -1);
}

int link(const char* from, const char* to) noexcept {
  return step([&] { return nextFunction<decltype(&::link)>("link")(from, to); }, -1);
}

int linkat(int fromFolder, const char* from, int toFolder, const char* to, int flags) noexcept {
  return step(
      [&] {
        return nextFunction<decltype(&::linkat)>("linkat")(fromFolder, from, toFolder, to, flags);
      },
      -1);
}

int chmod(const char* path, mode_t mode) noexcept {
  return step([&] { return nextFunction<decltype(&::chmod)>("chmod")(path, mode); }, -1);
}

int fchmod(int file, mode_t mode) noexcept {
  return step([&] { return nextFunction<decltype(&::fchmod)>("fchmod")(file, mode); }, -1);
}

ssize_t write(int file, const void* bytes, size_t size) {
  const auto call = [&] { return nextFunction<decltype(&::write)>("write")(file, bytes, size); };
  return file > STDERR_FILENO ? step(call, ssize_t{-1}) : call();
}

ssize_t sendfile(int to, int from, off_t* offset, size_t size) noexcept {
  return step(
      [&] { return nextFunction<decltype(&::sendfile)>("sendfile")(to, from, offset, size); },
      ssize_t{-1});
}

int fsync(int) {
  return step([] { return 0; }, -1);
}

int fdatasync(int) {
  return step([] { return 0; }, -1);
}

int syncfs(int) noexcept {
  return step([] { return 0; }, -1);
}

int truncate(const char* path, off_t size) noexcept {
  return step([&] { return nextFunction<decltype(&::truncate)>("truncate")(path, size); }, -1);
}

int ftruncate(int file, off_t size) noexcept {
  return step([&] { return nextFunction<decltype(&::ftruncate)>("ftruncate")(file, size); }, -1);
}

int posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const arguments[],
                char* const environment[]) {
  return step(
      [&] {
        return nextFunction<decltype(&::posix_spawn)>("posix_spawn")(
            process, path, actions, attributes, arguments, environment);
      },
      failure);
}

}  // extern "C"
