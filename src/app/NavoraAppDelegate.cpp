#include "app/NavoraAppDelegate.h"

#include <functional>
#include <utility>

#include "app/DesktopTimeZone.h"
#include "app/NavoraIcon.h"
#include "app/NavoraMenus.h"
#include "app/PageScripts.h"
#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"

namespace navora {
namespace {

constexpr Size windowSize{1240, 820};
constexpr Size minimumWindowSize{760, 560};
constexpr double statusIconSize = 18;

}  // namespace

NavoraAppDelegate::NavoraAppDelegate(Platform& platform)
    : platform_(platform),
      origin_(DesktopOrigin::configured(
          platform.system().environmentVariable("NAVORA_URL"),
          [&platform](const auto& host) { return platform.system().asciiHostName(host); })),
      displayedLocale_(DesktopLocale::current()),
      reminderPolicy_(
          platform.userDefaults(), [&platform] { return platform.system().now(); },
          [&platform] { return Calendar(platform.system().timeZoneIdentifier()); }) {}

NavoraAppDelegate::~NavoraAppDelegate() {
  if (!webView_) return;
  webView_->setNavigationDelegate(nullptr);
  webView_->setPageDialogDelegate(nullptr);
}

void NavoraAppDelegate::applicationDidFinishLaunching() {
  makeMenus();
  makeWindow();
  observeSystem();
  makeQuickCapture();
  makeStatusItem();
  registerCaptureShortcut();
  makeNotifications();
  makeUpdates();
  loadLogin();
  showWindow();
  quickCapturePanel_->tellRestoredFailure();
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
  if (quickCapturePanel_) quickCapturePanel_->flushDraft();
  if (notifications_) notifications_->stop();
  captureShortcut_.reset();
}

bool NavoraAppDelegate::windowShouldClose() {
  window_->orderOut();
  return false;
}

void NavoraAppDelegate::makeMenus() {
  platform_.application().setMainMenu(NavoraMenus::mainMenu(), *this);
}

void NavoraAppDelegate::makeWindow() {
  window_ = platform_.makeMainWindow(
      {L("Навора"), windowSize, minimumWindowSize, "NavoraMainWindow"}, *this);
  makeWebView();
  makeNavigation();
  window_->setContentView(webView_);
  makeErrorView();
}

void NavoraAppDelegate::makeWebView() {
  WebViewConfiguration configuration{origin_};
  for (const MessageHandler& handler : messageHandlers)
    configuration.messageHandlerNames.emplace_back(handler.name);
  configuration.userScripts = PageScripts::userScripts(
      origin_, platform_.system().timeZoneIdentifier(), platform_.resources());
  configuration.messageHandler = this;
  webView_ = platform_.makeWebView(configuration);
}

void NavoraAppDelegate::makeNavigation() {
  navigation_ = std::make_unique<DesktopNavigation>(
      origin_, platform_.dialogs(), platform_.system(), platform_.workspace(),
      [this](const std::filesystem::path& destination) {
        return platform_.makeFileReplacement(destination);
      });
  navigation_->window = window_;
  navigation_->onStart = [this] { errorView_->hide(); };
  navigation_->onLoad = [this] { pageDidLoad(); };
  navigation_->onFailure = [this](const PlatformError&) { errorView_->show(); };
  webView_->setNavigationDelegate(navigation_.get());
  webView_->setPageDialogDelegate(navigation_.get());
}

void NavoraAppDelegate::makeErrorView() {
  errorView_ = std::make_unique<LoadFailureView>(
      [this](const ErrorViewDescription& description) {
        return platform_.makeErrorView(*window_, description);
      },
      LoadFailureView::Actions{.retry = [this] { reload(); },
                               .openInBrowser = [this] { openInBrowser(); }});
}

void NavoraAppDelegate::observeSystem() {
  timeZoneObserver_ = platform_.system().observeTimeZoneChange([this] { refreshSystemTimeZone(); });
  wakeObserver_ = platform_.system().observeWake([this] { refreshAfterResume(); });
}

void NavoraAppDelegate::makeQuickCapture() {
  captureFocus_ =
      std::make_unique<CaptureFocus>(*webView_, *window_, platform_.mainQueue(), origin_);
  quickCapturePanel_ = std::make_unique<DesktopQuickCapture>(
      DesktopQuickCapture::Dependencies{
          .backgroundQueue = platform_.backgroundQueue(),
          .mainQueue = platform_.mainQueue(),
          .system = platform_.system(),
          .userDefaults = platform_.userDefaults(),
          .workspace = platform_.workspace(),
          .draftFile = platform_.makePrivateFile("capture-draft.json"),
          .makeHttpSession = httpSessions(),
          .makePanel =
              [this](Size contentSize, CapturePanelDelegate& delegate) {
                return platform_.makeCapturePanel(contentSize, delegate);
              }},
      webView_, origin_);
  quickCapturePanel_->onHiddenFailure = [this](const std::string& title, const std::string& text,
                                               std::function<void()> showPanel) {
    tellCaptureFailure(title, text, std::move(showPanel));
  };
  quickCapturePanel_->onLogin = [this] {
    showWindow();
    const auto url = webView_->url();
    if (!url || url->path() != "/login") loadLogin();
  };
}

void NavoraAppDelegate::makeStatusItem() {
  statusItem_ =
      platform_.makeStatusItem({NavoraIcon::menuBarTemplate(platform_.imaging(), statusIconSize),
                                L("Навора"), NavoraMenus::statusMenu()},
                               *this);
}

void NavoraAppDelegate::registerCaptureShortcut() {
  captureShortcut_ = std::make_unique<CaptureShortcut>(
      platform_.hotKeys(), platform_.mainQueue(), platform_.system(), [this] { quickCapture(); });
  if (captureShortcut_->isTaken()) statusItem_->insertMenuItem(0, NavoraMenus::shortcutTaken());
}

void NavoraAppDelegate::makeNotifications() {
  notifications_ = std::make_unique<DesktopNotifications>(
      DesktopNotifications::Dependencies{
          .backgroundQueue = platform_.backgroundQueue(),
          .dialogs = platform_.dialogs(),
          .mainQueue = platform_.mainQueue(),
          .notificationCenter = platform_.notificationCenter(),
          .system = platform_.system(),
          .userDefaults = platform_.userDefaults(),
          .makeHttpSession = httpSessions(),
          .deniedText = [this] { return platform_.wording().notificationsDenied; }},
      webView_, origin_);
  notifications_->onOpen = [this](const Url& url) {
    if (DesktopOrigin::contains(url, origin_)) openNotification(url);
  };
  notifications_->onOpenCapture = [this] { quickCapture(); };
  notifications_->start();
}

void NavoraAppDelegate::tellCaptureFailure(const std::string& title, const std::string& text,
                                           std::function<void()> showPanel) {
  notifications_->notifyOfCapture(title, text, [showPanel = std::move(showPanel)](bool shown) {
    if (!shown) showPanel();
  });
}

void NavoraAppDelegate::makeUpdates() {
  updateGuard_ =
      std::make_unique<UpdateGuard>(platform_.mainQueue(), *webView_, *quickCapturePanel_, origin_);
  updates_ = std::make_unique<DesktopUpdates>(
      DesktopUpdates::Dependencies{
          .mainQueue = platform_.mainQueue(),
          .system = platform_.system(),
          .workspace = platform_.workspace(),
          .makeUpdater =
              [this](UpdaterUserDriver& userDriver, UpdaterDelegate& delegate) {
                return platform_.makeUpdater(userDriver, delegate);
              },
          .upToDateText = [this] { return platform_.wording().upToDate; }},
      platform_.makeUpdateBannerView(), reminderPolicy_);
  updates_->attach(*window_);
  updates_->showWindow = [this] { showWindow(); };
  updates_->prepareForRestart = [this](UpdateGuard::Answer answer) {
    prepareForUpdate(std::move(answer));
  };
  updates_->resumeEditing = [this] { updateGuard_->resume(); };
  updates_->start();
}

ServiceClient::MakeHttpSession NavoraAppDelegate::httpSessions() {
  return [this](const HttpSessionConfiguration& configuration) {
    return platform_.makeHttpSession(configuration);
  };
}

void NavoraAppDelegate::loadLogin() {
  webView_->load(WebRequest{origin_.appendingPathComponent("login")});
}

void NavoraAppDelegate::pageDidLoad() {
  errorView_->hide();
  if (notifications_) notifications_->refresh();
  const auto url = webView_->url();
  if (url && url->path() == "/") quickCapturePanel_->resumeAfterLogin();
  captureFocus_->start();
}

void NavoraAppDelegate::refreshAfterResume() {
  if (notifications_) notifications_->refresh();
  if (updates_) updates_->refreshAfterResume();
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

}  // namespace navora
