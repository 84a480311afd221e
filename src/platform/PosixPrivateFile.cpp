#include "platform/PosixPrivateFile.h"

#include <array>
#include <cerrno>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/FileDescriptor.h"

namespace navora {
namespace {

constexpr mode_t privateMode = 0600;

// Returns the error of the call that has just failed.
PlatformError lastError() {
  return {"POSIX", errno, std::generic_category().message(errno)};
}

std::filesystem::path withSuffix(std::filesystem::path path, const char* suffix) {
  path += suffix;
  return path;
}

// Returns a name beside the file that does not exist: the content set aside earlier is kept too.
std::filesystem::path freeName(const std::filesystem::path& path) {
  auto name = withSuffix(path, ".damaged");
  std::error_code ignored;
  for (int number = 2; std::filesystem::exists(name, ignored); ++number)
    name = withSuffix(path, (".damaged." + std::to_string(number)).c_str());
  return name;
}

bool writeNewFile(const std::filesystem::path& path, std::string_view content) {
  const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC;
  const FileDescriptor file(::open(path.c_str(), flags, privateMode));
  return file && ::fchmod(file.get(), privateMode) == 0 && file.write(content) && file.flush();
}

bool removeIfThere(const std::filesystem::path& path) {
  return ::unlink(path.c_str()) == 0 || errno == ENOENT;
}

}  // namespace

PosixPrivateFile::PosixPrivateFile(std::filesystem::path path)
    : path_(std::move(path)), newPath_(withSuffix(path_, ".new")) {}

PosixPrivateFile::Content PosixPrivateFile::read() const {
  const FileDescriptor file(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file && errno == ENOENT) return std::optional<std::string>();
  if (!file) return Unexpected(lastError());
  std::string content;
  std::array<char, 65536> buffer;
  for (;;) {
    const ssize_t size = ::read(file.get(), buffer.data(), buffer.size());
    if (size == 0) return std::optional(std::move(content));
    if (size < 0 && errno != EINTR) return Unexpected(lastError());
    if (size > 0) content.append(buffer.data(), static_cast<std::size_t>(size));
  }
}

std::optional<PlatformError> PosixPrivateFile::write(std::string_view content) {
  const auto folder = path_.parent_path();
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  if (failure) return PlatformError{"POSIX", failure.value(), failure.message()};
  if (!writeNewFile(newPath_, content) || ::rename(newPath_.c_str(), path_.c_str()) != 0 ||
      !flushFolder(folder)) {
    const PlatformError error = lastError();
    ::unlink(newPath_.c_str());
    return error;
  }
  return std::nullopt;
}

std::optional<PlatformError> PosixPrivateFile::remove() {
  std::error_code ignored;
  const bool hadFile = std::filesystem::exists(path_, ignored);
  if (!removeIfThere(newPath_) || !removeIfThere(path_)) return lastError();
  if (hadFile && !flushFolder(path_.parent_path())) return lastError();
  return std::nullopt;
}

Expected<std::string, PlatformError> PosixPrivateFile::setAside() {
  const auto aside = freeName(path_);
  if (::rename(path_.c_str(), aside.c_str()) != 0) return Unexpected(lastError());
  flushFolder(path_.parent_path());
  return aside.filename().string();
}

}  // namespace navora
