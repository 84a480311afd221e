#include "hosts/linux/web/LinuxWebView.h"

#include <utility>

#include "hosts/linux/system/PlatformErrors.h"
#include "hosts/linux/web/Cookies.h"
#include "hosts/linux/web/LinuxRequest.h"

namespace navora {
namespace {

void turnOffLocalCache(WebKitURIRequest* request) {
  // Null unless the URL is http or https.
  if (SoupMessageHeaders* headers = webkit_uri_request_get_http_headers(request)) {
    soup_message_headers_replace(headers, "Cache-Control", "no-cache");
    soup_message_headers_replace(headers, "Pragma", "no-cache");
  }
}

// Returns std::nullopt before the first load and after a crash of the web process.
std::optional<Url> shownUrl(WebKitWebView* view) {
  return Url::parse(stringFrom(webkit_web_view_get_uri(view)));
}

Json jsonFrom(JSCValue* value) {
  const GCharPtr text(jsc_value_to_json(value, 0));
  if (!text) return nullptr;
  return parseJson(text.get()).value_or(nullptr);
}

WebKitSettings* makeSettings() {
  return webkit_settings_new_with_settings(
      // Otherwise window.open() without a click fails before DesktopNavigation is asked.
      "javascript-can-open-windows-automatically", TRUE, "enable-fullscreen", FALSE, nullptr);
}

}  // namespace

WebKitWebView* LinuxWebView::makeView(WebSession& session, WebKitUserContentManager* manager) {
  const auto settings = GObjectPtr<WebKitSettings>::adopt(makeSettings());
  return WEBKIT_WEB_VIEW(g_object_ref_sink(
      g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", session.context(), "user-content-manager",
                   manager, "settings", settings.get(), nullptr)));
}

LinuxWebView::LinuxWebView(WebSession& session, const WebViewConfiguration& configuration)
    : manager_(GObjectPtr<WebKitUserContentManager>::adopt(webkit_user_content_manager_new())),
      bridge_(manager_.get(), configuration),
      view_(GObjectPtr<WebKitWebView>::adopt(makeView(session, manager_.get()))),
      uriChanges_(view_.get(), "notify::uri", G_CALLBACK(onUriChanged), this),
      cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())),
      loadTimeout_(view_.get()),
      navigationEvents_(*this, view_.get(), session.context(), bridge_.actions(), loadTimeout_),
      pageDialogs_(view_.get(), bridge_),
      contextMenu_(view_.get()) {
  webkit_settings_set_enable_back_forward_navigation_gestures(
      webkit_web_view_get_settings(view_.get()), TRUE);
  startWebProcess();
}

LinuxWebView::~LinuxWebView() {
  g_cancellable_cancel(cancellable_.get());
}

// WebKitGTK starts the sandboxed web process at the first load or script. That takes longer than
// the rest of the application's start, so an empty script makes both run in parallel.
void LinuxWebView::startWebProcess() {
  evaluateJavaScript("0", nullptr);
}

void LinuxWebView::setNavigationDelegate(NavigationDelegate* delegate) {
  navigationEvents_.setDelegate(delegate);
}

void LinuxWebView::setPageDialogDelegate(PageDialogDelegate* delegate) {
  pageDialogs_.setDelegate(delegate);
}

void LinuxWebView::setBackgroundColor(const GdkRGBA& color) {
  webkit_web_view_set_background_color(view_.get(), &color);
}

void LinuxWebView::load(const WebRequest& request) {
  loadTimeout_.setSeconds(request.timeoutSeconds);
  const bool pastCache = request.cachePolicy == CachePolicy::reloadIgnoringLocalCacheData;
  if (pastCache && shownUrl(view_.get()) == request.url) {
    // WebKitGTK treats loading the shown URL as a reload and replaces our cache headers.
    return webkit_web_view_reload_bypass_cache(view_.get());
  }
  const auto native =
      GObjectPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(request.url.string().c_str()));
  if (pastCache) turnOffLocalCache(native.get());
  webkit_web_view_load_request(view_.get(), native.get());
}

void LinuxWebView::load(const PlatformRequest& request) {
  const auto& native = static_cast<const LinuxRequest&>(request);
  loadTimeout_.setSeconds(WebRequest{*Url::parse("about:blank")}.timeoutSeconds);
  webkit_web_view_load_request(view_.get(), native.get());
}

std::optional<Url> LinuxWebView::url() const {
  if (auto shown = shownUrl(view_.get())) return shown;
  return navigationEvents_.webProcessCrashed() ? lastUrl_ : std::nullopt;
}

bool LinuxWebView::isLoading() const {
  return webkit_web_view_is_loading(view_.get()) != FALSE;
}

void LinuxWebView::onUriChanged(WebKitWebView* view, GParamSpec*, gpointer self) {
  if (auto shown = shownUrl(view)) static_cast<LinuxWebView*>(self)->lastUrl_ = *shown;
}

void LinuxWebView::evaluateJavaScript(const std::string& script, EvaluationCompletion completion) {
  const auto finish = [](GObject* source, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<EvaluationCompletion> callback(static_cast<EvaluationCompletion*>(data));
    GErrorPtr error;
    const auto value = GObjectPtr<JSCValue>::adopt(
        webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(source), result, error.out()));
    // The destructor cancels; no completion is called after it.
    if (!*callback || error.matches(G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
    if (error) return (*callback)(Unexpected(platformErrorFrom(*error)));
    (*callback)(jsonFrom(value.get()));
  };
  webkit_web_view_evaluate_javascript(
      view_.get(), script.c_str(), static_cast<gssize>(script.size()), nullptr, nullptr,
      cancellable_.get(), finish, new EvaluationCompletion(std::move(completion)));
}

void LinuxWebView::allCookies(CookiesCompletion completion) {
  WebKitCookieManager* store =
      webkit_web_context_get_cookie_manager(webkit_web_view_get_context(view_.get()));
  readAllCookies(store, cancellable_.get(), std::move(completion));
}

}  // namespace navora
