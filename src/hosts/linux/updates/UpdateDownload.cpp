#include "hosts/linux/updates/UpdateDownload.h"

#include <cerrno>
#include <string>
#include <utility>

#include <fcntl.h>

#include "hosts/linux/installation/UpdateAddress.h"
#include "hosts/linux/installation/UpdateError.h"

namespace navora {
namespace {

constexpr std::uint64_t largestArchive = 1024ULL * 1024 * 1024;

HttpSessionConfiguration limitsFor(const UpdateArchive& archive) {
  constexpr double oneDay = 24 * 60 * 60;
  return {.requestTimeoutSeconds = 60,
          .resourceTimeoutSeconds = oneDay,
          .maximumBodyBytes = archive.length};
}

PlatformError failure(const std::string& description) {
  return updateError(UpdateStage::download, description);
}

}  // namespace

UpdateDownload::UpdateDownload(UpdateArchive archive, std::filesystem::path file, Progress progress,
                               MainQueue& mainQueue)
    : archive_(std::move(archive)),
      path_(std::move(file)),
      progress_(std::move(progress)),
      session_(limitsFor(archive_), mainQueue) {}

void UpdateDownload::start(Completion completion) {
  HttpReceiver receiver{[this](int status, std::uint64_t length) { return begin(status, length); },
                        [this](std::string_view bytes) { return write(bytes); }};
  session_.send(HttpRequest{archive_.url}, std::move(receiver),
                [this, completion = std::move(completion)](const HttpSession::Result& result) {
                  completion(end(result));
                });
}

std::optional<PlatformError> UpdateDownload::begin(int status, std::uint64_t length) {
  constexpr int ok = 200;
  if (status != ok) return failure("The server answered " + std::to_string(status));
  if (archive_.length > largestArchive || (length != 0 && length != archive_.length))
    return failure("The archive has another length than announced");
  file_ = FileDescriptor(
      ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!file_)
    return systemUpdateError(UpdateStage::download, "The archive cannot be written", errno);
  progress_.expected(archive_.length);
  return std::nullopt;
}

std::optional<PlatformError> UpdateDownload::write(std::string_view bytes) {
  size_ += bytes.size();
  progress_.received(bytes.size());
  if (!file_.write(bytes))
    return systemUpdateError(UpdateStage::download, "The archive cannot be written", errno);
  return std::nullopt;
}

std::optional<PlatformError> UpdateDownload::end(const HttpSession::Result& result) const {
  if (!result) {
    PlatformError error = result.error();
    if (error.domain != updateErrorDomain) error = failure(error.localizedDescription);
    return error;
  }
  if (result->bodyTooLarge || size_ != archive_.length)
    return failure("The archive has another length than announced");
  return std::nullopt;
}

}  // namespace navora
