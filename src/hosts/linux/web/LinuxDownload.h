#pragma once

#include <memory>
#include <string>
#include <vector>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/Download.h"

namespace navora {

// A WebKitGTK download. Destroying it cancels the download.
class LinuxDownload final : public Download, public std::enable_shared_from_this<LinuxDownload> {
 public:
  explicit LinuxDownload(WebKitDownload* download);
  ~LinuxDownload() override;

  void setDelegate(DownloadDelegate* delegate) override { delegate_ = delegate; }

 private:
  static gboolean onDecideDestination(WebKitDownload*, const char* suggestedFilename,
                                      gpointer self);
  static void onFailed(WebKitDownload*, GError* error, gpointer self);
  static void onFinished(WebKitDownload*, gpointer self);

  void askForDestination(const std::string& suggestedFilename);
  void setDestination(const std::optional<std::filesystem::path>& path);
  bool isTruncated() const;
  void fail(const PlatformError& error);

  GObjectPtr<WebKitDownload> download_;
  DownloadDelegate* delegate_ = nullptr;
  bool ended_ = false;
  std::vector<SignalConnection> signals_;
};

}  // namespace navora
