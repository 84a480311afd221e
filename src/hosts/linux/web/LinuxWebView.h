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

// The page in a WebKitGTK view.
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

  // Shown wherever the page has not painted yet.
  void setBackgroundColor(const GdkRGBA& color);

  GtkWidget* widget() const { return GTK_WIDGET(view_.get()); }

 private:
  static void onUriChanged(WebKitWebView* view, GParamSpec*, gpointer self);
  static WebKitWebView* makeView(WebSession& session, WebKitUserContentManager* manager);

  void startWebProcess();

  GObjectPtr<WebKitUserContentManager> manager_;
  PageBridge bridge_;
  GObjectPtr<WebKitWebView> view_;
  // The address shown last. The engine forgets it when the page's process crashes, but it is still
  // the page that the user sees and wants back.
  std::optional<Url> lastUrl_;
  SignalConnection uriChanges_;
  // What was asked of the engine and has not been answered yet.
  GObjectPtr<GCancellable> questions_;
  LoadTimeout loadTimeout_;
  NavigationEvents navigationEvents_;
  PageDialogs pageDialogs_;
  PageContextMenu contextMenu_;
};

}  // namespace navora
