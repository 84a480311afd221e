#pragma once

#include <memory>
#include <vector>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/web/LoadTimeout.h"
#include "hosts/linux/web/PageActions.h"
#include "hosts/linux/web/TruncatedPageCheck.h"
#include "platform/NavigationDelegate.h"
#include "platform/WebView.h"

namespace navora {

// Puts the engine's navigation signals in the delegate's terms and carries its decisions out.
// Without a delegate everything is refused.
class NavigationEvents {
 public:
  // All arguments must outlive this object.
  NavigationEvents(WebView& owner, WebKitWebView* view, WebKitWebContext* context,
                   PageActions& actions, LoadTimeout& timeout);

  NavigationEvents(const NavigationEvents&) = delete;
  NavigationEvents& operator=(const NavigationEvents&) = delete;

  void setDelegate(NavigationDelegate* delegate) { delegate_ = delegate; }

  // From a crash of the page's process until the next load starts.
  bool webProcessIsGone() const { return webProcessIsGone_; }

 private:
  static gboolean onDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                                 WebKitPolicyDecisionType type, gpointer self);
  static GtkWidget* onCreate(WebKitWebView*, WebKitNavigationAction* action, gpointer self);
  static void onLoadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self);
  static gboolean onLoadFailed(WebKitWebView*, WebKitLoadEvent, const char* uri, GError* error,
                               gpointer self);
  static gboolean onTlsErrors(WebKitWebView*, const char* uri, GTlsCertificate*,
                              GTlsCertificateFlags, gpointer self);
  static void onWebProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason,
                                     gpointer self);
  static void onDownloadStarted(WebKitWebContext*, WebKitDownload* download, gpointer self);
  static void onMainResourceFinished(WebKitWebResource*, gpointer self);

  NavigationPolicy decideAction(WebKitNavigationAction* action, bool newWindow);
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
  // The current load was reported as failed; the engine calls it finished all the same.
  bool loadFailed_ = false;
  bool stoppedByTimeout_ = false;
  bool webProcessIsGone_ = false;
  TruncatedPageCheck truncation_;
  SignalConnection mainResource_;
  std::vector<SignalConnection> signals_;
};

}  // namespace navora
