#include "hosts/linux/LinuxPlatform.h"

#include <filesystem>
#include <utility>

#include <gnu/libc-version.h>

#include "hosts/linux/application/ApplicationVersion.h"
#include "hosts/linux/banner/LinuxUpdateBanner.h"
#include "hosts/linux/capture/LinuxCapturePanel.h"
#include "hosts/linux/network/LinuxHttpSession.h"
#include "hosts/linux/system/PlatformErrors.h"
#include "hosts/linux/updates/LinuxUpdater.h"
#include "hosts/linux/web/LinuxWebView.h"
#include "hosts/linux/web/ReplacementFolder.h"
#include "hosts/linux/window/ApplicationIcon.h"
#include "hosts/linux/window/LinuxErrorView.h"
#include "hosts/linux/window/LinuxMainWindow.h"
#include "locale/DesktopLocale.h"
#include "platform/PosixFileReplacement.h"
#include "platform/PosixPrivateFile.h"

namespace navora {

std::shared_ptr<MainWindow> LinuxPlatform::makeMainWindow(const MainWindowDescription& description,
                                                          MainWindowDelegate& delegate) {
  useApplicationIcon(resources_.folder().parent_path());
  colorScheme_.emplace();
  auto window =
      std::make_shared<LinuxMainWindow>(description, delegate, userDefaults_, *colorScheme_);
  application_.watch(*window);
  dialogs_.setParent(&window->native());
  return window;
}

std::shared_ptr<WebView> LinuxPlatform::makeWebView(const WebViewConfiguration& configuration) {
  if (!webSession_) webSession_.emplace();
  return std::make_shared<LinuxWebView>(*webSession_, configuration);
}

std::unique_ptr<ErrorView> LinuxPlatform::makeErrorView(MainWindow& window,
                                                        const ErrorViewDescription& description) {
  return std::make_unique<LinuxErrorView>(static_cast<LinuxMainWindow&>(window), description);
}

std::unique_ptr<CapturePanelView> LinuxPlatform::makeCapturePanel(Size contentSize,
                                                                  CapturePanelDelegate& delegate) {
  auto panel = std::make_unique<LinuxCapturePanel>(contentSize, delegate, *colorScheme_);
  application_.watchPanel(panel->native());
  return panel;
}

DesktopWording LinuxPlatform::wording() const {
  return {L("Уведомления недоступны. Включите службу уведомлений рабочего стола и попробуйте ещё "
            "раз."),
          L("Обновлений для этой системы нет")};
}

std::unique_ptr<StatusItem> LinuxPlatform::makeStatusItem(const StatusItemDescription& description,
                                                          MenuDelegate& delegate) {
  return std::make_unique<LinuxStatusItem>(description, delegate, application_.commands(),
                                           *colorScheme_, missingTray_,
                                           resources_.folder().parent_path() / "icons");
}

std::unique_ptr<UpdateBannerView> LinuxPlatform::makeUpdateBannerView() {
  return std::make_unique<LinuxUpdateBanner>();
}

std::unique_ptr<Updater> LinuxPlatform::makeUpdater(UpdaterUserDriver& userDriver,
                                                    UpdaterDelegate& delegate) {
  auto installation = Installation::ofThisProgram();
  auto version = applicationVersion(installation);
  return std::make_unique<LinuxUpdater>(
      LinuxUpdater::Configuration{
          .settings = UpdateSettings::ofThisBuild(system_.environmentVariable("NAVORA_URL")),
          .installation = std::move(installation),
          .currentVersion = std::move(version),
          .systemVersion = gnu_get_libc_version(),
          .launch = updateLaunch_,
          .terminate = application_.commands().terminate},
      LinuxUpdater::Dependencies{mainQueue_, updateQueue_, system_, userDefaults_}, userDriver,
      delegate);
}

std::unique_ptr<PrivateFile> LinuxPlatform::makePrivateFile(const std::string& name) {
  return std::make_unique<PosixPrivateFile>(std::filesystem::path(g_get_user_data_dir()) /
                                            "navora" / name);
}

std::unique_ptr<HttpSession> LinuxPlatform::makeHttpSession(
    const HttpSessionConfiguration& configuration) {
  return std::make_unique<LinuxHttpSession>(configuration, mainQueue_);
}

Expected<std::unique_ptr<FileReplacement>, PlatformError> LinuxPlatform::makeFileReplacement(
    const std::filesystem::path& destination) {
  return PosixFileReplacement::make(destination, mainQueue_, makeReplacementFolder,
                                    platformErrorFromErrno);
}

}  // namespace navora
