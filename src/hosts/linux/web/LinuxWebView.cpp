#include "hosts/linux/web/LinuxWebView.h"

#include <utility>

#include "hosts/linux/system/PlatformErrors.h"
#include "hosts/linux/web/Cookies.h"
#include "hosts/linux/web/LinuxRequest.h"

namespace navora {
namespace {

// Sets the headers that the engine's own reload past the cache sends. For the page shown the engine
// ignores its caches in any case; for another one these make it ask the server. Out of reach are
// what the page includes, and another page than the one shown while the memory cache has a fresh
// copy: clearing that cache would discard the pages kept for going back, too, and going back to the
// reply to a form would then send the form again.
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
      contextMenu_(view_.get(), bridge_.actions()) {
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
  // WebKitGTK (2.50) remembers the kind of a load that failed: after a reload by the page it would
  // replace our cache headers by those of a reload. Stopping makes it forget; it is done after a
  // failure only, because it also ends the requests of the page shown.
  if (navigationEvents_.lastLoadFailed()) webkit_web_view_stop_loading(view_.get());
  const auto native =
      GObjectPtr<WebKitURIRequest>::adopt(webkit_uri_request_new(request.url.string().c_str()));
  // Not webkit_web_view_reload_bypass_cache(): that repeats the last request of the page shown,
  // with its method and body, even while another page is being loaded.
  if (request.cachePolicy == CachePolicy::reloadIgnoringLocalCacheData)
    turnOffLocalCache(native.get());
  webkit_web_view_load_request(view_.get(), native.get());
}

void LinuxWebView::load(const PlatformRequest& request) {
  const auto& native = static_cast<const LinuxRequest&>(request);
  loadTimeout_.setSeconds(WebRequest{*Url::parse("about:blank")}.timeoutSeconds);
  webkit_web_view_load_request(view_.get(), native.get());
}

std::optional<Url> LinuxWebView::url() const {
  if (navigationEvents_.urlBeingLoaded()) return navigationEvents_.urlBeingLoaded();
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
