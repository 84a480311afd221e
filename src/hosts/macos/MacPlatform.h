#pragma once

#include "hosts/macos/graphics/MacImaging.h"
#include "hosts/macos/notifications/MacNotificationCenter.h"
#include "hosts/macos/system/MacBackgroundQueue.h"
#include "hosts/macos/system/MacHotKeys.h"
#include "hosts/macos/system/MacMainQueue.h"
#include "hosts/macos/system/MacResources.h"
#include "hosts/macos/system/MacSystem.h"
#include "hosts/macos/system/MacUserDefaults.h"
#include "hosts/macos/system/MacWorkspace.h"
#include "hosts/macos/window/MacDialogs.h"
#include "platform/Platform.h"

namespace navora {

// The platform interfaces on macOS. Wherever an interface takes another one as an argument, it
// requires an object made by this class.
class MacPlatform final : public Platform {
 public:
  explicit MacPlatform(Application& application) : application_(application) {}

  Application& application() override { return application_; }
  BackgroundQueue& backgroundQueue() override { return backgroundQueue_; }
  Dialogs& dialogs() override { return dialogs_; }
  HotKeys& hotKeys() override { return hotKeys_; }
  Imaging& imaging() override { return imaging_; }
  MainQueue& mainQueue() override { return mainQueue_; }
  NotificationCenter& notificationCenter() override { return notificationCenter_; }
  Resources& resources() override { return resources_; }
  System& system() override { return system_; }
  UserDefaults& userDefaults() override { return userDefaults_; }
  Workspace& workspace() override { return workspace_; }
  DesktopWording wording() const override;

  std::shared_ptr<MainWindow> makeMainWindow(const MainWindowDescription& description,
                                             MainWindowDelegate& delegate) override;
  std::shared_ptr<WebView> makeWebView(const WebViewConfiguration& configuration) override;
  std::unique_ptr<ErrorView> makeErrorView(MainWindow& window,
                                           const ErrorViewDescription& description) override;
  std::unique_ptr<CapturePanelView> makeCapturePanel(Size contentSize,
                                                     CapturePanelDelegate& delegate) override;
  std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription& description,
                                             MenuDelegate& delegate) override;
  std::unique_ptr<UpdateBannerView> makeUpdateBannerView() override;
  std::unique_ptr<Updater> makeUpdater(UpdaterUserDriver& userDriver,
                                       UpdaterDelegate& delegate) override;
  std::unique_ptr<PrivateFile> makePrivateFile(const std::string& name) override;
  std::unique_ptr<HttpSession> makeHttpSession(
      const HttpSessionConfiguration& configuration) override;
  Expected<std::unique_ptr<FileReplacement>, PlatformError> makeFileReplacement(
      const std::filesystem::path& destination) override;

 private:
  Application& application_;
  MacBackgroundQueue backgroundQueue_;
  MacDialogs dialogs_;
  MacHotKeys hotKeys_;
  MacImaging imaging_;
  MacMainQueue mainQueue_;
  MacNotificationCenter notificationCenter_;
  MacResources resources_;
  MacSystem system_;
  MacUserDefaults userDefaults_;
  MacWorkspace workspace_;
};

}  // namespace navora
