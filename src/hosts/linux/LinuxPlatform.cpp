#include "hosts/linux/LinuxPlatform.h"

#include "hosts/linux/LinuxErrorView.h"
#include "hosts/linux/LinuxMainWindow.h"
#include "hosts/linux/LinuxWebView.h"

namespace navora {

std::shared_ptr<MainWindow> LinuxPlatform::makeMainWindow(const MainWindowDescription& description,
                                                          MainWindowDelegate& delegate) {
  colorScheme_.emplace();
  auto window = std::make_shared<LinuxMainWindow>(description, delegate, userDefaults_);
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

}  // namespace navora
