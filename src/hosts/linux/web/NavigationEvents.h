#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/web/LoadTimeout.h"
#include "hosts/linux/web/PageActions.h"
#include "hosts/linux/web/TruncatedPageCheck.h"
#include "platform/NavigationDelegate.h"
#include "platform/WebView.h"

namespace navora {

// Converts the engine's navigation signals for the NavigationDelegate and applies its decisions.
// Without a delegate every navigation is cancelled.
class NavigationEvents {
 public:
  // Everything passed must outlive this object.
  NavigationEvents(WebView& owner, WebKitWebView* view, WebKitWebContext* context,
                   PageActions& actions, LoadTimeout& timeout);

  NavigationEvents(const NavigationEvents&) = delete;
  NavigationEvents& operator=(const NavigationEvents&) = delete;

  void setDelegate(NavigationDelegate* delegate) { delegate_ = delegate; }

  // Returns true from the failure of a load until the next one starts.
  bool lastLoadFailed() const { return loadFailed_; }

  // Returns the URL that the view is loading, or nullopt if that is the one that the view reports.
  // WebKitGTK (2.50) reports the page shown until the first bytes of a page that a link or script
  // loads have arrived.
  const std::optional<Url>& urlBeingLoaded() const { return urlBeingLoaded_; }

  // Returns true from a crash of the web process until the next load starts.
  bool webProcessCrashed() const { return webProcessCrashed_; }

 private:
  static gboolean onDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                                 WebKitPolicyDecisionType type, gpointer self);
  static GtkWidget* onCreate(WebKitWebView*, WebKitNavigationAction* action, gpointer self);
  static void onLoadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self);
  static gboolean onLoadFailed(WebKitWebView*, WebKitLoadEvent, const char* uri, GError* error,
                               gpointer self);
  static void onResourceLoadStarted(WebKitWebView* view, WebKitWebResource* resource,
                                    WebKitURIRequest* request, gpointer self);
  static gboolean onTlsErrors(WebKitWebView*, const char* uri, GTlsCertificate*,
                              GTlsCertificateFlags, gpointer self);
  static void onWebProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason,
                                     gpointer self);
  static void onDownloadStarted(WebKitWebContext*, WebKitDownload* download, gpointer self);
  static void onMainResourceFinished(WebKitWebResource*, gpointer self);

  // Calls `answer` once, before it returns.
  void decideAction(WebKitNavigationAction* action, bool newWindow,
                    const NavigationDelegate::ActionPolicyHandler& answer);
  NavigationPolicy decideResponse(WebKitResponsePolicyDecision* decision);
  void fail(const PlatformError& error);
  void loadStarted();
  void loadCommitted();
  void loadFinished();
  void timedOut();

  WebView& owner_;
  WebKitWebView* view_;
  PageActions& actions_;
  LoadTimeout& timeout_;
  NavigationDelegate* delegate_ = nullptr;
  // The present load was reported as failed; WebKitGTK reports it as finished as well.
  bool loadFailed_ = false;
  bool stoppedByTimeout_ = false;
  bool webProcessCrashed_ = false;
  std::optional<Url> urlBeingLoaded_;
  TruncatedPageCheck truncation_;
  SignalConnection mainResource_;
  std::vector<SignalConnection> signals_;
};

}  // namespace navora
