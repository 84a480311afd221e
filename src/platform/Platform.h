#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "platform/Application.h"
#include "platform/BackgroundQueue.h"
#include "platform/CapturePanelView.h"
#include "platform/Dialogs.h"
#include "platform/ErrorView.h"
#include "platform/FileReplacement.h"
#include "platform/HotKeys.h"
#include "platform/HttpSession.h"
#include "platform/Image.h"
#include "platform/MainQueue.h"
#include "platform/MainWindow.h"
#include "platform/NotificationCenter.h"
#include "platform/PrivateFile.h"
#include "platform/Resources.h"
#include "platform/StatusItem.h"
#include "platform/System.h"
#include "platform/UpdateBannerView.h"
#include "platform/Updater.h"
#include "platform/UserDefaults.h"
#include "platform/WebView.h"
#include "platform/Workspace.h"
#include "support/Expected.h"

namespace navora {

// Texts that name the desktop or its settings and therefore differ between hosts, in the current
// interface language.
struct DesktopWording {
  // Says that notifications are not allowed, and how to allow them.
  std::string notificationsDenied;
  // Says that no newer version exists for this kind of computer.
  std::string upToDate;
};

// Provides all platform interfaces of a host. The host creates it before the application delegate
// and destroys it after.
class Platform {
 public:
  virtual ~Platform() = default;

  virtual Application& application() = 0;
  virtual BackgroundQueue& backgroundQueue() = 0;
  virtual Dialogs& dialogs() = 0;
  virtual HotKeys& hotKeys() = 0;
  virtual Imaging& imaging() = 0;
  virtual MainQueue& mainQueue() = 0;
  virtual NotificationCenter& notificationCenter() = 0;
  virtual Resources& resources() = 0;
  virtual System& system() = 0;
  virtual UserDefaults& userDefaults() = 0;
  virtual Workspace& workspace() = 0;
  virtual DesktopWording wording() const = 0;

  // The delegate must outlive the window.
  virtual std::shared_ptr<MainWindow> makeMainWindow(const MainWindowDescription& description,
                                                     MainWindowDelegate& delegate) = 0;
  virtual std::shared_ptr<WebView> makeWebView(const WebViewConfiguration& configuration) = 0;
  // Adds the view to the content of `window`, above everything added before.
  virtual std::unique_ptr<ErrorView> makeErrorView(MainWindow& window,
                                                   const ErrorViewDescription& description) = 0;
  // The delegate must outlive the panel.
  virtual std::unique_ptr<CapturePanelView> makeCapturePanel(Size contentSize,
                                                             CapturePanelDelegate& delegate) = 0;
  // The delegate must outlive the item.
  virtual std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription& description,
                                                     MenuDelegate& delegate) = 0;
  virtual std::unique_ptr<UpdateBannerView> makeUpdateBannerView() = 0;
  // The user driver and the delegate must outlive the updater.
  virtual std::unique_ptr<Updater> makeUpdater(UpdaterUserDriver& userDriver,
                                               UpdaterDelegate& delegate) = 0;
  // Returns the file of this name in the application's data folder.
  virtual std::unique_ptr<PrivateFile> makePrivateFile(const std::string& name) = 0;
  virtual std::unique_ptr<HttpSession> makeHttpSession(
      const HttpSessionConfiguration& configuration) = 0;
  // Fails if no file can be written beside `destination`.
  virtual Expected<std::unique_ptr<FileReplacement>, PlatformError> makeFileReplacement(
      const std::filesystem::path& destination) = 0;
};

}  // namespace navora
