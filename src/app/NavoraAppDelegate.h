#pragma once

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

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

// Owns the objects that live as long as the application, creates the main window on the service
// origin and connects the features with each other.
class NavoraAppDelegate final : public ApplicationDelegate,
                                public MainWindowDelegate,
                                public MenuDelegate,
                                public ScriptMessageHandler {
 public:
  // Reads the origin, which is fixed for the life of the process. `platform` must outlive this
  // object.
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

  // Hides the window and returns false.
  bool windowShouldClose() override;

  void performMenuAction(DelegateAction action) override;

  // Dispatches a message to its handler. Ignores messages from any frame but the main frame of a
  // page of the origin, unknown names, and bodies that are too long or not JSON.
  void didReceiveScriptMessage(const ScriptMessage& message) override;

  // Shows the About panel.
  void about();
  // Asks the desktop for permission to show notifications.
  void enableNotifications();
  // Shows the window if it is hidden or miniaturized, and brings it to the front.
  void showWindow();
  // Reloads the page, bypassing the local cache; loads the origin if no page of it is shown.
  void reload();
  // Shows the capture panel.
  void quickCapture();
  // Opens the URL that reload() would load in the user's browser.
  void openInBrowser();
  // Shows the window and loads the page of the origin that a notification refers to; for a place
  // within the root page, waits until that page is ready. Does nothing while a restart is prepared.
  void openNotification(const Url& url);
  // Publishes the system's current time zone to the page.
  void refreshSystemTimeZone();
  // Checks for a newer version and shows the result.
  void checkForUpdates();
  // Calls `answer` with whether the application can restart now without losing unsaved input.
  void prepareForUpdate(UpdateGuard::Answer answer);
  // Returns whether a restart for an update is prepared. Until it happens or is cancelled, nothing
  // may reload the page or show the capture panel, because the user's input has been secured.
  bool restartPrepared() const { return updateGuard_ && updateGuard_->restartPrepared(); }
  // Refreshes the page and the notifications after the system woke up or the application became
  // active.
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
  // Shows a notification whose click opens the capture panel; where notifications are off, calls
  // `showPanel`.
  void tellCaptureFailure(const std::string& title, const std::string& text,
                          std::function<void()> showPanel);
  void makeUpdates();
  ServiceClient::MakeHttpSession httpSessions();
  void loadLogin();
  void pageDidLoad();

  // Returns the URL of the shown page if it is of the origin.
  std::optional<Url> currentServiceUrl() const;

  struct MessageHandler {
    std::string_view name;
    void (NavoraAppDelegate::*handle)(const Json& body);
  };
  // Every message that pages can post.
  static const std::array<MessageHandler, 4> messageHandlers;
  void handleLocale(const Json& body);
  void handleCaptureAppearance(const Json& body);
  void handleTimeZoneDetection(const Json& body);
  void handleNotifications(const Json& body);
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
