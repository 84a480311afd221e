#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Dialogs.h"
#include "platform/Download.h"
#include "platform/FileReplacement.h"
#include "platform/MainWindow.h"
#include "platform/NavigationDelegate.h"
#include "platform/PageDialogDelegate.h"
#include "platform/System.h"
#include "platform/Workspace.h"
#include "support/Expected.h"
#include "support/Lifetime.h"
#include "support/Url.h"

namespace navora {

// Keeps the web view on the service origin. Pages of the origin load in the view. Foreign URLs that
// the trusted main frame links to, or requests in a new window, open in the user's browser. All
// other navigations are cancelled. Dialogs and file choosers are shown for the trusted main frame
// only. Owns the downloads until they finish. A download replaces the file that the user has chosen
// only when it is complete.
class DesktopNavigation final : public NavigationDelegate,
                                public PageDialogDelegate,
                                public DownloadDelegate {
 public:
  using MakeFileReplacement =
      std::function<Expected<std::unique_ptr<FileReplacement>, PlatformError>(
          const std::filesystem::path& destination)>;

  // The references must outlive this object.
  DesktopNavigation(Url origin, Dialogs& dialogs, const System& system, Workspace& workspace,
                    MakeFileReplacement makeFileReplacement);
  ~DesktopNavigation() override;

  DesktopNavigation(const DesktopNavigation&) = delete;
  DesktopNavigation& operator=(const DesktopNavigation&) = delete;

  // Optional callbacks, called on the main thread.
  std::function<void()> onLoad;
  std::function<void(const PlatformError&)> onFailure;
  std::function<void()> onStart;

  // The parent of file choosers. Without it they are cancelled.
  std::weak_ptr<MainWindow> window;

  void decidePolicyForAction(WebView& webView, const NavigationAction& action,
                             const ActionPolicyHandler& answer) override;
  NavigationPolicy decidePolicyForResponse(const NavigationResponse& response) override;
  void didStartProvisionalNavigation() override;
  void didFinishNavigation() override;
  void didFailNavigation(const PlatformError& error) override;
  void webContentProcessDidTerminate() override;
  void navigationDidBecomeDownload(std::shared_ptr<Download> download) override;

  void runAlertPanel(const std::string& message, const FrameInfo& initiatedBy,
                     AlertCompletion completion) override;
  void runConfirmPanel(const std::string& message, const FrameInfo& initiatedBy,
                       ConfirmCompletion completion) override;
  void runTextInputPanel(const std::string& prompt, const std::optional<std::string>& defaultText,
                         const FrameInfo& initiatedBy, PromptCompletion completion) override;
  void runOpenPanel(const OpenPanelParameters& parameters, const FrameInfo& initiatedBy,
                    OpenPanelCompletion completion) override;

  void decideDestination(Download& download, const std::optional<Url>& responseUrl,
                         const std::string& suggestedFilename,
                         DestinationCompletion completion) override;
  bool allowsRedirect(Download& download, const std::optional<Url>& url) override;
  void downloadDidFinish(Download& download) override;
  void downloadDidFail(Download& download, const PlatformError& error) override;

 private:
  struct ActiveDownload {
    // What the download writes. Declared before it, because it is destroyed after it.
    std::unique_ptr<FileReplacement> file;
    // Why the chosen file cannot be written. The engine only knows that the download was cancelled.
    std::optional<PlatformError> failure;
    std::shared_ptr<Download> download;
  };

  bool isOfOrigin(const std::optional<Url>& url) const;
  bool isTrusted(const FrameInfo& frame) const;
  // Whether the frame may show `question` to the user.
  bool mayAsk(const FrameInfo& frame, std::string_view question) const;
  void decideWithinOrigin(WebView& webView, const NavigationAction& action,
                          const ActionPolicyHandler& answer);
  void offerToBrowser(const NavigationAction& action);
  void refuse(const std::optional<Url>& url, std::string_view rule) const;
  void debug(const std::string& line) const;
  ActiveDownload* find(const Download* download);
  std::optional<std::filesystem::path> prepareFile(ActiveDownload& active,
                                                   const std::filesystem::path& destination);
  void forget(const Download& download);
  void showFailure(const PlatformError& error);

  const Url origin_;
  Dialogs& dialogs_;
  const System& system_;
  Workspace& workspace_;
  const MakeFileReplacement makeFileReplacement_;
  // In the order in which they started, until their file is in place or they fail.
  std::vector<ActiveDownload> downloads_;
  Lifetime lifetime_;
};

}  // namespace navora
