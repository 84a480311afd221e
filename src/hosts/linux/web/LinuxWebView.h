#pragma once

#include <memory>
#include <optional>
#include <string>

#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/web/LoadTimeout.h"
#include "hosts/linux/web/NavigationEvents.h"
#include "hosts/linux/web/PageBridge.h"
#include "hosts/linux/web/PageContextMenu.h"
#include "hosts/linux/web/PageDialogs.h"
#include "hosts/linux/web/WebSession.h"
#include "platform/WebView.h"

namespace navora {

// A web view of WebKitGTK. Destroying it cancels pending evaluations and cookie requests.
class LinuxWebView final : public WebView {
 public:
  LinuxWebView(WebSession& session, const WebViewConfiguration& configuration);
  ~LinuxWebView() override;

  void setNavigationDelegate(NavigationDelegate* delegate) override;
  void setPageDialogDelegate(PageDialogDelegate* delegate) override;
  void load(const WebRequest& request) override;
  void load(const PlatformRequest& request) override;
  std::optional<Url> url() const override;
  bool isLoading() const override;
  void evaluateJavaScript(const std::string& script, EvaluationCompletion completion) override;
  void allCookies(CookiesCompletion completion) override;

  // Sets the colour shown until the page has painted.
  void setBackgroundColor(const GdkRGBA& color);

  GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }

 private:
  static void onUriChanged(WebKitWebView* view, GParamSpec*, gpointer self);
  static WebKitWebView* makeView(WebSession& session, WebKitUserContentManager* manager);

  void startWebProcess();

  GObjectPtr<WebKitUserContentManager> manager_;
  PageBridge bridge_;
  GObjectPtr<WebKitWebView> view_;
  // The URL shown last. WebKitGTK clears its own when the web process crashes; reloading needs it.
  std::optional<Url> lastUrl_;
  SignalConnection uriChanges_;
  // Cancels the pending evaluations and cookie requests.
  GObjectPtr<GCancellable> cancellable_;
  LoadTimeout loadTimeout_;
  NavigationEvents navigationEvents_;
  PageDialogs pageDialogs_;
  PageContextMenu contextMenu_;
};

}  // namespace navora
