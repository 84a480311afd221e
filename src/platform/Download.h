#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "platform/PlatformError.h"
#include "support/Url.h"

namespace navora {

class Download;

// What a download asks and reports. Called on the main thread.
class DownloadDelegate {
 public:
  // The file to write, or none to cancel the download. May be called later, at most once.
  using DestinationCompletion = std::function<void(std::optional<std::filesystem::path>)>;

  virtual ~DownloadDelegate() = default;

  virtual void decideDestination(Download& download, const std::string& suggestedFilename,
                                 DestinationCompletion completion) = 0;
  // Whether a redirect to `url` may be followed; refusing ends the download as failed.
  virtual bool allowsRedirect(Download& download, const std::optional<Url>& url) = 0;

  // Exactly one of the two ends every download, also one that was cancelled.
  virtual void downloadDidFinish(Download& download) = 0;
  virtual void downloadDidFail(Download& download, const PlatformError& error) = 0;
};

// A file being fetched by the web view. Released before its end, it is cancelled silently.
class Download {
 public:
  virtual ~Download() = default;

  // The delegate must outlive the download or be replaced by null.
  virtual void setDelegate(DownloadDelegate* delegate) = 0;
};

}  // namespace navora
