#include "fakes/FakePlatform.h"

#include "support/FatalError.h"

namespace navora {
namespace {

template <class Object>
Object& existing(Object* object, int line) {
  if (!object) fatalError("The object has not been created", "FakePlatform", line);
  return *object;
}

}  // namespace

FakeMainWindow& FakePlatform::window() const {
  return existing(window_.lock().get(), __LINE__);
}

FakeWebView& FakePlatform::webView() const {
  return existing(webView_.lock().get(), __LINE__);
}

FakeErrorView& FakePlatform::errorView() const {
  const auto& overlays = *window().overlays();
  return existing(overlays.empty() ? nullptr : overlays.back(), __LINE__);
}

FakeCapturePanelView& FakePlatform::capturePanel() const {
  return existing(captureDesktop_.panel, __LINE__);
}

FakeStatusItem& FakePlatform::statusItem() const {
  return existing(statusItem_, __LINE__);
}

std::shared_ptr<MainWindow> FakePlatform::makeMainWindow(const MainWindowDescription& description,
                                                         MainWindowDelegate& delegate) {
  auto window = std::make_shared<FakeMainWindow>(log_, description, delegate);
  window_ = window;
  return window;
}

std::shared_ptr<WebView> FakePlatform::makeWebView(const WebViewConfiguration& configuration) {
  auto webView = std::make_shared<FakeWebView>(log_, configuration);
  webView_ = webView;
  return webView;
}

std::unique_ptr<ErrorView> FakePlatform::makeErrorView(MainWindow& window,
                                                       const ErrorViewDescription& description) {
  auto& ours = dynamic_cast<FakeMainWindow&>(window);
  return std::make_unique<FakeErrorView>(log_, ours, description);
}

std::unique_ptr<CapturePanelView> FakePlatform::makeCapturePanel(Size contentSize,
                                                                 CapturePanelDelegate& delegate) {
  return std::make_unique<FakeCapturePanelView>(log_, captureDesktop_, contentSize, delegate);
}

std::unique_ptr<StatusItem> FakePlatform::makeStatusItem(const StatusItemDescription& description,
                                                         MenuDelegate& delegate) {
  return std::make_unique<FakeStatusItem>(log_, description, delegate, statusItem_);
}

std::unique_ptr<UpdateBannerView> FakePlatform::makeUpdateBannerView() {
  return std::make_unique<FakeUpdateBannerView>(updateBanner_);
}

std::unique_ptr<Updater> FakePlatform::makeUpdater(UpdaterUserDriver& userDriver,
                                                   UpdaterDelegate& delegate) {
  return std::make_unique<FakeUpdater>(updater_, userDriver, delegate);
}

FakePrivateFile::Disk& FakePlatform::disk(const std::string& name) {
  auto& disk = disks_[name];
  if (!disk) disk = std::make_shared<FakePrivateFile::Disk>();
  return *disk;
}

std::unique_ptr<PrivateFile> FakePlatform::makePrivateFile(const std::string& name) {
  disk(name);
  return std::make_unique<FakePrivateFile>(disks_.at(name));
}

std::unique_ptr<HttpSession> FakePlatform::makeHttpSession(
    const HttpSessionConfiguration& configuration) {
  return std::make_unique<FakeHttpSession>(network_, configuration);
}

}  // namespace navora
