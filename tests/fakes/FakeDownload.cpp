#include "fakes/FakeDownload.h"

#include <utility>

namespace navora {
namespace {

const PlatformError cancelled{"Download", PlatformError::cancelledCode, "cancelled"};

}  // namespace

FakeDownload::FakeDownload(EventLog& log, std::string name) : log_(log), name_(std::move(name)) {}

FakeDownload::~FakeDownload() {
  log_.record((ended_ ? "download.release " : "download.cancel ") + name_);
}

void FakeDownload::askDestination(const std::string& suggestedFilename,
                                  const std::optional<Url>& responseUrl) {
  if (!delegate_) return fail(cancelled);
  delegate_->decideDestination(
      *this, responseUrl, suggestedFilename,
      lifetime_.guard([this](std::optional<std::filesystem::path> destination) {
        destination_ = std::move(destination);
        if (!destination_) fail(cancelled);
      }));
}

bool FakeDownload::redirect(const std::optional<Url>& url) {
  if (delegate_ && delegate_->allowsRedirect(*this, url)) return true;
  fail(cancelled);
  return false;
}

void FakeDownload::finish() {
  if (std::exchange(ended_, true)) return;
  if (delegate_) delegate_->downloadDidFinish(*this);
}

void FakeDownload::fail(const PlatformError& error) {
  if (std::exchange(ended_, true)) return;
  if (delegate_) delegate_->downloadDidFail(*this, error);
}

}  // namespace navora
