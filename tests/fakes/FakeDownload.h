#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "fakes/EventLog.h"
#include "platform/Download.h"
#include "support/Lifetime.h"

namespace navora {

// A download whose course the test tells. Its delegate may release it in every report that ends it.
class FakeDownload final : public Download {
 public:
  FakeDownload(EventLog& log, std::string name);
  ~FakeDownload() override;
  FakeDownload(const FakeDownload&) = delete;
  FakeDownload& operator=(const FakeDownload&) = delete;

  // Where the file goes, once that is known.
  const std::optional<std::filesystem::path>& destination() const { return destination_; }
  DownloadDelegate* delegate() const { return delegate_; }

  // Asks for the destination; without one the download fails as cancelled.
  void askDestination(const std::string& suggestedFilename);
  // The server sends the download elsewhere; a refusal fails it. Tells whether it goes on.
  bool redirect(const std::optional<Url>& url);
  void finish();
  void fail(const PlatformError& error);

  void setDelegate(DownloadDelegate* delegate) override { delegate_ = delegate; }

 private:
  EventLog& log_;
  std::string name_;
  DownloadDelegate* delegate_ = nullptr;
  std::optional<std::filesystem::path> destination_;
  bool ended_ = false;
  Lifetime lifetime_;
};

}  // namespace navora
