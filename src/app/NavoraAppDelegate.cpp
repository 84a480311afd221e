#include "app/NavoraAppDelegate.h"

#include <string_view>
#include <utility>

#include "app/DesktopLocale.h"
#include "app/DesktopTimeZone.h"
#include "app/LocaleMessage.h"
#include "app/PageScripts.h"
#include "navigation/DesktopOrigin.h"
#include "support/FatalError.h"

namespace navora {
namespace {

constexpr std::string_view productName = "Навора";
constexpr Size windowSize{1240, 820};
constexpr Size minimumWindowSize{760, 560};

// No message of ours comes near this size; a larger one is not worth parsing.
constexpr std::size_t maximumMessageBytes = 1024 * 1024;

}  // namespace

NavoraAppDelegate::NavoraAppDelegate(Platform& platform)
    : platform_(platform),
      origin_(DesktopOrigin::configured(platform.system().environmentVariable("NAVORA_URL"))),
      displayedLocale_(DesktopLocale::current()) {}

NavoraAppDelegate::~NavoraAppDelegate() {
  if (!webView_) return;
  webView_->setNavigationDelegate(nullptr);
  webView_->setPageDialogDelegate(nullptr);
}

void NavoraAppDelegate::applicationDidFinishLaunching() {
  makeWindow();
  observeSystem();
  makeQuickCapture();
  loadLogin();
  showWindow();
}

bool NavoraAppDelegate::applicationShouldHandleReopen(bool) {
  showWindow();
  return true;
}

void NavoraAppDelegate::applicationDidReceiveCaptureRequest() {
  quickCapture();
}

bool NavoraAppDelegate::applicationShouldTerminateAfterLastWindowClosed() {
  return false;
}

void NavoraAppDelegate::applicationDidBecomeActive() {
  refreshAfterResume();
}

void NavoraAppDelegate::applicationWillTerminate() {
  captureShortcut_.reset();
}

bool NavoraAppDelegate::windowShouldClose() {
  window_->orderOut();
  return false;
}

void NavoraAppDelegate::showWindow() {
  if (!window_) fatalError("The main window is missing", "App", __LINE__);
  if (window_->isMiniaturized()) window_->deminiaturize();
  window_->makeKeyAndOrderFront();
  platform_.application().activateIgnoringOtherApplications();
}

void NavoraAppDelegate::makeWindow() {
  window_ = platform_.makeMainWindow(
      {L(productName), windowSize, minimumWindowSize, "NavoraMainWindow"}, *this);
  makeWebView();
  makeNavigation();
  window_->setContentView(webView_);
  makeErrorView();
}

void NavoraAppDelegate::makeWebView() {
  WebViewConfiguration configuration{origin_};
  configuration.messageHandlerNames = {"navoraLocale", "navoraCaptureAppearance",
                                       "navoraTimeZoneDetection", "navoraNotifications"};
  configuration.userScripts = PageScripts::userScripts(
      origin_, platform_.system().timeZoneIdentifier(), platform_.resources());
  configuration.messageHandler = this;
  webView_ = platform_.makeWebView(configuration);
}

void NavoraAppDelegate::makeNavigation() {
  navigation_ =
      std::make_unique<DesktopNavigation>(origin_, platform_.dialogs(), platform_.workspace());
  navigation_->window = window_;
  navigation_->onStart = [this] { errorView_->hide(); };
  navigation_->onLoad = [this] { pageDidLoad(); };
  navigation_->onFailure = [this](const PlatformError&) { errorView_->show(); };
  webView_->setNavigationDelegate(navigation_.get());
  webView_->setPageDialogDelegate(navigation_.get());
}

void NavoraAppDelegate::makeErrorView() {
  errorView_ = std::make_unique<LoadFailureView>(
      platform_, *window_,
      LoadFailureView::Actions{[this] { reload(); }, [this] { openInBrowser(); }});
}

void NavoraAppDelegate::observeSystem() {
  timeZoneObserver_ = platform_.system().observeTimeZoneChange([this] { refreshSystemTimeZone(); });
  wakeObserver_ = platform_.system().observeWake([this] { refreshAfterResume(); });
}

void NavoraAppDelegate::makeQuickCapture() {
  captureFocus_ =
      std::make_unique<CaptureFocus>(*webView_, *window_, platform_.mainQueue(), origin_);
  quickCapturePanel_ = std::make_unique<DesktopQuickCapture>(platform_, webView_, origin_);
  quickCapturePanel_->onLogin = [this] {
    showWindow();
    const auto url = webView_->url();
    if (!url || url->path() != "/login") loadLogin();
  };
  captureShortcut_ = std::make_unique<CaptureShortcut>(
      platform_.hotKeys(), platform_.mainQueue(), platform_.system(), [this] { quickCapture(); });
}

void NavoraAppDelegate::quickCapture() {
  if (!restartPrepared_) quickCapturePanel_->show();
}

void NavoraAppDelegate::openNotification(const Url& url) {
  if (restartPrepared_) return;
  captureFocus_->capturePending = false;
  captureFocus_->pendingDestination = url;
  showWindow();
  if (!url.path().empty() && url.path() != "/") {
    captureFocus_->pendingDestination.reset();
    webView_->load(WebRequest{url});
    return;
  }
  // A place within the root page: the page-ready handler leads there after what is loaded here.
  const auto shown = currentServiceUrl();
  if (!shown) {
    loadLogin();
  } else if (shown->path() == "/") {
    captureFocus_->start();
  } else if (shown->path() != "/login") {
    webView_->load(WebRequest{origin_});
  }
}

void NavoraAppDelegate::loadLogin() {
  webView_->load(WebRequest{origin_.appendingPathComponent("login")});
}

void NavoraAppDelegate::pageDidLoad() {
  errorView_->hide();
  const auto url = webView_->url();
  if (url && url->path() == "/") quickCapturePanel_->resumeAfterLogin();
  captureFocus_->start();
}

void NavoraAppDelegate::reload() {
  if (restartPrepared_) return;
  errorView_->hide();
  webView_->load(
      WebRequest{currentServiceUrl().value_or(origin_), CachePolicy::reloadIgnoringLocalCacheData});
}

void NavoraAppDelegate::openInBrowser() {
  platform_.workspace().open(currentServiceUrl().value_or(origin_));
}

void NavoraAppDelegate::refreshAfterResume() {
  if (!currentServiceUrl()) return;
  refreshSystemTimeZone();
  webView_->evaluateJavaScript("window.dispatchEvent(new Event('tolvin:resume'));");
}

void NavoraAppDelegate::refreshSystemTimeZone() {
  if (!currentServiceUrl()) return;
  webView_->evaluateJavaScript(DesktopTimeZone::script(platform_.system().timeZoneIdentifier()));
}

std::optional<Url> NavoraAppDelegate::currentServiceUrl() const {
  auto url = webView_ ? webView_->url() : std::nullopt;
  if (!url || !DesktopOrigin::contains(*url, origin_)) return std::nullopt;
  return url;
}

void NavoraAppDelegate::didReceiveScriptMessage(const ScriptMessage& message) {
  if (!message.frame.isMainFrame || !message.frame.requestUrl) return;
  if (!DesktopOrigin::contains(*message.frame.requestUrl, origin_)) return;
  if (message.body.size() > maximumMessageBytes) return;
  const auto body = parseJson(message.body);
  if (!body) return;

  if (message.name == "navoraLocale") {
    handleLocaleMessage(*body);
  } else if (message.name == "navoraCaptureAppearance") {
    handleAppearanceMessage(*body);
  } else if (message.name == "navoraTimeZoneDetection") {
    refreshSystemTimeZone();
  }
}

void NavoraAppDelegate::handleLocaleMessage(const Json& body) {
  const auto message = LocaleMessage::read(body);
  if (!message) return;
  DesktopLocale::requested = message->requested;
  DesktopLocale::detected = message->detected;
  if (DesktopLocale::current() == displayedLocale_) return;
  displayedLocale_ = DesktopLocale::current();
  rebuildInterface();
}

void NavoraAppDelegate::handleAppearanceMessage(const Json& body) {
  const auto appearance = CaptureAppearance::read(body);
  if (!appearance) return;
  quickCapturePanel_->syncAppearance(body);
  window_->setAppearance(appearance->windowAppearance());
}

void NavoraAppDelegate::rebuildInterface() {
  window_->setTitle(L(productName));
  quickCapturePanel_->refreshLocale();
  errorView_->refreshLocale();
}

}  // namespace navora
