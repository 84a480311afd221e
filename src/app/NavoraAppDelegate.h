#pragma once

#include <memory>
#include <optional>
#include <string>

#include "app/CaptureFocus.h"
#include "app/CaptureShortcut.h"
#include "app/LoadFailureView.h"
#include "app/UpdateGuard.h"
#include "capture/DesktopQuickCapture.h"
#include "navigation/DesktopNavigation.h"
#include "notifications/DesktopNotifications.h"
#include "origin/ServiceClient.h"
#include "platform/Application.h"
#include "platform/MainWindow.h"
#include "platform/Menu.h"
#include "platform/Platform.h"
#include "platform/ScriptMessage.h"
#include "platform/StatusItem.h"
#include "platform/System.h"
#include "platform/WebView.h"
#include "support/Json.h"
#include "support/Url.h"
#include "updates/DesktopUpdates.h"
#include "updates/UpdateReminderPolicy.h"

namespace navora {

// Owns everything that lives as long as the application, builds the main window on the service
// origin and wires the features to each other.
class NavoraAppDelegate final : public ApplicationDelegate,
                                public MainWindowDelegate,
                                public MenuDelegate,
                                public ScriptMessageHandler {
 public:
  // The origin is fixed here, for the life of the process. The platform must outlive this object.
  explicit NavoraAppDelegate(Platform& platform);
  ~NavoraAppDelegate() override;

  NavoraAppDelegate(const NavoraAppDelegate&) = delete;
  NavoraAppDelegate& operator=(const NavoraAppDelegate&) = delete;

  void applicationDidFinishLaunching() override;
  bool applicationShouldHandleReopen(bool hasVisibleWindows) override;
  void applicationDidReceiveCaptureRequest() override;
  bool applicationShouldTerminateAfterLastWindowClosed() override;
  void applicationDidBecomeActive() override;
  void applicationWillTerminate() override;

  // Closing only hides the window.
  bool windowShouldClose() override;

  void performMenuAction(DelegateAction action) override;

  // Messages that do not come from the main frame of a page of the origin are dropped.
  void didReceiveScriptMessage(const ScriptMessage& message) override;

  // Says what the application is.
  void about();
  // Asks the desktop for permission to show notifications.
  void enableNotifications();
  // Brings the window to the front, whatever state it is in.
  void showWindow();
  // Loads the page again, past the local cache; the origin itself where no page of it is shown.
  void reload();
  // Opens the quick capture panel.
  void quickCapture();
  // Opens what `reload` would load in the user's browser.
  void openInBrowser();
  // Shows the window on a page of the origin that a notification points to; a place within the root
  // page as soon as that page is ready for it. Nothing while an update restart is prepared.
  void openNotification(const Url& url);
  // Publishes the current system time zone to the page.
  void refreshSystemTimeZone();
  // Looks for a newer version, and says what came of it.
  void checkForUpdates();
  // Answers whether the application may be restarted now, with nothing unsaved.
  void prepareForUpdate(UpdateGuard::Answer answer);
  // While an update restart is prepared, nothing may reload the page or open the panel: what the
  // user was doing has been put away.
  bool restartPrepared() const { return updateGuard_ && updateGuard_->restartPrepared(); }
  // Lets the page catch up after the system woke or the application became active.
  void refreshAfterResume();

 private:
  void makeMenus();
  void makeWindow();
  void makeWebView();
  void makeNavigation();
  void makeErrorView();
  void observeSystem();
  void makeQuickCapture();
  void makeStatusItem();
  void registerCaptureShortcut();
  void makeNotifications();
  void makeUpdates();
  ServiceClient::MakeHttpSession httpSessions();
  void loadLogin();
  void pageDidLoad();

  std::optional<Url> currentServiceUrl() const;
  void handleLocaleMessage(const Json& body);
  void handleAppearanceMessage(const Json& body);
  void handleNotificationsMessage(const Json& body);
  void rebuildInterface();

  Platform& platform_;
  const Url origin_;
  std::string displayedLocale_;

  std::shared_ptr<MainWindow> window_;
  std::unique_ptr<DesktopNavigation> navigation_;
  std::shared_ptr<WebView> webView_;
  std::unique_ptr<LoadFailureView> errorView_;
  std::unique_ptr<CaptureFocus> captureFocus_;
  std::unique_ptr<ObserverToken> timeZoneObserver_;
  std::unique_ptr<ObserverToken> wakeObserver_;
  std::unique_ptr<DesktopQuickCapture> quickCapturePanel_;
  std::unique_ptr<StatusItem> statusItem_;
  std::unique_ptr<CaptureShortcut> captureShortcut_;
  std::unique_ptr<DesktopNotifications> notifications_;
  std::unique_ptr<UpdateGuard> updateGuard_;
  UpdateReminderPolicy reminderPolicy_;
  std::unique_ptr<DesktopUpdates> updates_;
};

}  // namespace navora
