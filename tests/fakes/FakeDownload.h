#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "fakes/EventLog.h"
#include "platform/Download.h"
#include "support/Lifetime.h"

namespace navora {

// A download driven by the test. Its delegate may release it when it finishes or fails.
class FakeDownload final : public Download {
 public:
  FakeDownload(EventLog& log, std::string name);
  ~FakeDownload() override;
  FakeDownload(const FakeDownload&) = delete;
  FakeDownload& operator=(const FakeDownload&) = delete;

  // The file to write; nullopt until the destination is chosen.
  const std::optional<std::filesystem::path>& destination() const { return destination_; }
  DownloadDelegate* delegate() const { return delegate_; }

  // Asks the delegate for the destination; without one the download fails as cancelled.
  void askDestination(
      const std::string& suggestedFilename,
      const std::optional<Url>& responseUrl = Url::parse("https://navora.example/file"));
  // Acts as a redirect by the server, which fails the download if refused. Returns whether the
  // download continues.
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
