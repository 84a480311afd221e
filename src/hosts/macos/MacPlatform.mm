#include "hosts/macos/MacPlatform.h"

#include <filesystem>

#import <Foundation/Foundation.h>

#include "hosts/macos/application/MacStatusItem.h"
#include "hosts/macos/capture/MacCapturePanel.h"
#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/MacHttpSession.h"
#include "hosts/macos/updates/MacUpdateBanner.h"
#include "hosts/macos/updates/MacUpdater.h"
#include "hosts/macos/web/MacWebView.h"
#include "hosts/macos/web/ReplacementFolder.h"
#include "hosts/macos/window/MacErrorView.h"
#include "hosts/macos/window/MacMainWindow.h"
#include "locale/DesktopLocale.h"
#include "platform/PosixFileReplacement.h"
#include "platform/PosixPrivateFile.h"

namespace navora {

std::shared_ptr<MainWindow> MacPlatform::makeMainWindow(const MainWindowDescription& description,
                                                        MainWindowDelegate& delegate) {
  return std::make_shared<MacMainWindow>(description, delegate);
}

std::shared_ptr<WebView> MacPlatform::makeWebView(const WebViewConfiguration& configuration) {
  return std::make_shared<MacWebView>(configuration);
}

std::unique_ptr<ErrorView> MacPlatform::makeErrorView(MainWindow& window,
                                                      const ErrorViewDescription& description) {
  return std::make_unique<MacErrorView>(static_cast<MacMainWindow&>(window), description);
}

std::unique_ptr<CapturePanelView> MacPlatform::makeCapturePanel(Size contentSize,
                                                                CapturePanelDelegate& delegate) {
  return std::make_unique<MacCapturePanel>(contentSize, delegate);
}

DesktopWording MacPlatform::wording() const {
  return {L("Уведомления запрещены в macOS. Разрешите их в Системных настройках → Уведомления → "
            "Навора."),
          L("Обновлений для этого Mac нет")};
}

std::unique_ptr<StatusItem> MacPlatform::makeStatusItem(const StatusItemDescription& description,
                                                        MenuDelegate& delegate) {
  return std::make_unique<MacStatusItem>(description, delegate);
}

std::unique_ptr<UpdateBannerView> MacPlatform::makeUpdateBannerView() {
  return std::make_unique<MacUpdateBanner>();
}

std::unique_ptr<Updater> MacPlatform::makeUpdater(UpdaterUserDriver& userDriver,
                                                  UpdaterDelegate& delegate) {
  return std::make_unique<MacUpdater>(userDriver, delegate);
}

std::unique_ptr<PrivateFile> MacPlatform::makePrivateFile(const std::string& name) {
  NSArray<NSString*>* folders =
      NSSearchPathForDirectoriesInDomains(NSApplicationSupportDirectory, NSUserDomainMask, YES);
  return std::make_unique<PosixPrivateFile>(std::filesystem::path(toString(folders[0])) / "Navora" /
                                            name);
}

std::unique_ptr<HttpSession> MacPlatform::makeHttpSession(
    const HttpSessionConfiguration& configuration) {
  return std::make_unique<MacHttpSession>(configuration);
}

Expected<std::unique_ptr<FileReplacement>, PlatformError> MacPlatform::makeFileReplacement(
    const std::filesystem::path& destination) {
  return PosixFileReplacement::make(destination, mainQueue_, makeReplacementFolder,
                                    platformErrorFromErrno);
}

}  // namespace navora
