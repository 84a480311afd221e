#pragma once

#include <memory>
#include <optional>

#include "hosts/linux/ColorScheme.h"
#include "hosts/linux/LinuxApplication.h"
#include "hosts/linux/LinuxBackgroundQueue.h"
#include "hosts/linux/LinuxDialogs.h"
#include "hosts/linux/LinuxHotKeys.h"
#include "hosts/linux/LinuxImaging.h"
#include "hosts/linux/LinuxMainQueue.h"
#include "hosts/linux/LinuxNotificationCenter.h"
#include "hosts/linux/LinuxResources.h"
#include "hosts/linux/LinuxStatusItem.h"
#include "hosts/linux/LinuxSystem.h"
#include "hosts/linux/LinuxUserDefaults.h"
#include "hosts/linux/LinuxWorkspace.h"
#include "hosts/linux/WebSession.h"
#include "hosts/linux/update/UpdateLaunch.h"
#include "platform/Platform.h"

namespace navora {

// All doors of the Linux host. Nothing here touches the toolkit before the first window is made.
class LinuxPlatform final : public Platform {
 public:
  LinuxApplication& application() override { return application_; }
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
  std::unique_ptr<CapturePanel> makeCapturePanel(Size contentSize,
                                                 CapturePanelDelegate& delegate) override;
  std::unique_ptr<StatusItem> makeStatusItem(const StatusItemDescription& description,
                                             MenuDelegate& delegate) override;
  std::unique_ptr<UpdateBannerView> makeUpdateBannerView() override;
  std::unique_ptr<Updater> makeUpdater(UpdaterUserDriver& userDriver,
                                       UpdaterDelegate& delegate) override;
  std::unique_ptr<HttpSession> makeHttpSession(
      const HttpSessionConfiguration& configuration) override;

 private:
  // First of all: the web engine's processes must not inherit what it takes.
  UpdateLaunch updateLaunch_;
  LinuxApplication application_;
  LinuxBackgroundQueue backgroundQueue_;
  LinuxDialogs dialogs_;
  LinuxHotKeys hotKeys_;
  LinuxImaging imaging_;
  LinuxMainQueue mainQueue_;
  LinuxNotificationCenter notificationCenter_;
  LinuxResources resources_;
  LinuxSystem system_;
  LinuxUserDefaults userDefaults_;
  LinuxWorkspace workspace_;
  MissingTray missingTray_;
  std::optional<ColorScheme> colorScheme_;
  std::optional<WebSession> webSession_;
};

}  // namespace navora
