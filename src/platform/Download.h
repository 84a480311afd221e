#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "platform/PlatformError.h"
#include "support/Url.h"

namespace navora {

class Download;

// Makes a download's decisions and receives its result. Called on the main thread.
class DownloadDelegate {
 public:
  // Takes the file to write, which does not exist, or nullopt to cancel the download. Called at
  // most once, possibly later.
  using DestinationCompletion = std::function<void(std::optional<std::filesystem::path>)>;

  virtual ~DownloadDelegate() = default;

  // `responseUrl` is where the file comes from, after all redirects.
  virtual void decideDestination(Download& download, const std::optional<Url>& responseUrl,
                                 const std::string& suggestedFilename,
                                 DestinationCompletion completion) = 0;
  // Returns whether a redirect to `url` may be followed; a refused redirect fails the download.
  virtual bool allowsRedirect(Download& download, const std::optional<Url>& url) = 0;

  // Exactly one of these is called for each download; a cancelled download fails, and so does one
  // that is shorter than the server has announced. The file is closed by then.
  virtual void downloadDidFinish(Download& download) = 0;
  virtual void downloadDidFail(Download& download, const PlatformError& error) = 0;
};

// A file being downloaded by the web view. Destroying an unfinished download cancels it without
// calling the delegate.
class Download {
 public:
  virtual ~Download() = default;

  // The delegate must outlive the download or be replaced by null.
  virtual void setDelegate(DownloadDelegate* delegate) = 0;
};

}  // namespace navora
