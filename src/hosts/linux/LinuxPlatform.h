#pragma once

#include <memory>
#include <optional>

#include "hosts/linux/application/LinuxApplication.h"
#include "hosts/linux/bus/LoginManager.h"
#include "hosts/linux/graphics/LinuxImaging.h"
#include "hosts/linux/keyboard/LinuxHotKeys.h"
#include "hosts/linux/notifications/LinuxNotificationCenter.h"
#include "hosts/linux/system/LinuxBackgroundQueue.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "hosts/linux/system/LinuxResources.h"
#include "hosts/linux/system/LinuxSystem.h"
#include "hosts/linux/system/LinuxUserDefaults.h"
#include "hosts/linux/tray/LinuxStatusItem.h"
#include "hosts/linux/updates/UpdateLaunch.h"
#include "hosts/linux/web/WebSession.h"
#include "hosts/linux/window/ColorScheme.h"
#include "hosts/linux/window/LinuxDialogs.h"
#include "hosts/linux/workspace/LinuxWorkspace.h"
#include "platform/Platform.h"

namespace navora {

// The platform interfaces of the Linux host. Uses no GTK display before the first window is made.
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
  // First, because the web engine's processes must not inherit the variables and the descriptor
  // that it takes.
  UpdateLaunch updateLaunch_;
  LinuxMainQueue mainQueue_;
  LinuxBackgroundQueue backgroundQueue_{mainQueue_};
  // The updater's own, so that no other work waits while a release is unpacked.
  LinuxBackgroundQueue updateQueue_{mainQueue_};
  LinuxApplication application_;
  LinuxDialogs dialogs_;
  LinuxHotKeys hotKeys_;
  LinuxImaging imaging_;
  LinuxNotificationCenter notificationCenter_;
  LinuxResources resources_;
  LinuxSystem system_{observeResume};
  LinuxUserDefaults userDefaults_;
  LinuxWorkspace workspace_;
  MissingTrayWarning missingTray_;
  // Set by makeMainWindow(), which must precede makeCapturePanel() and makeStatusItem().
  std::optional<ColorScheme> colorScheme_;
  std::optional<WebSession> webSession_;
};

}  // namespace navora
