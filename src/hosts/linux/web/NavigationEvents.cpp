#include "hosts/linux/web/NavigationEvents.h"

#include <optional>
#include <utility>

#include "hosts/linux/system/PlatformErrors.h"
#include "hosts/linux/web/LinuxDownload.h"
#include "hosts/linux/web/LinuxRequest.h"

namespace navora {
namespace {

NavigationEvents& eventsOf(gpointer self) {
  return *static_cast<NavigationEvents*>(self);
}

std::optional<Url> urlOf(WebKitURIRequest* request) {
  const char* uri = request == nullptr ? nullptr : webkit_uri_request_get_uri(request);
  return uri == nullptr ? std::nullopt : Url::parse(uri);
}

std::optional<Url> urlOf(WebKitURIResponse* response) {
  const char* uri = response == nullptr ? nullptr : webkit_uri_response_get_uri(response);
  return uri == nullptr ? std::nullopt : Url::parse(uri);
}

NavigationType typeOf(WebKitNavigationAction* action, const std::optional<PageAction>& pageAction) {
  // The server chose the target of a redirect, not the user.
  if (webkit_navigation_action_is_redirect(action) != FALSE) return NavigationType::other;
  // WebKitGTK reports "Open Link" of the context menu as OTHER; it counts as a click.
  if (pageAction && pageAction->kind == PageAction::Kind::contextMenu)
    return NavigationType::linkActivated;
  switch (webkit_navigation_action_get_navigation_type(action)) {
    case WEBKIT_NAVIGATION_TYPE_LINK_CLICKED:
      return NavigationType::linkActivated;
    case WEBKIT_NAVIGATION_TYPE_FORM_SUBMITTED:
      return NavigationType::formSubmitted;
    case WEBKIT_NAVIGATION_TYPE_BACK_FORWARD:
      return NavigationType::backForward;
    case WEBKIT_NAVIGATION_TYPE_RELOAD:
      return NavigationType::reload;
    case WEBKIT_NAVIGATION_TYPE_FORM_RESUBMITTED:
      return NavigationType::formResubmitted;
    case WEBKIT_NAVIGATION_TYPE_OTHER:
      break;
  }
  return NavigationType::other;
}

void carryOut(NavigationPolicy policy, WebKitPolicyDecision* decision) {
  switch (policy) {
    case NavigationPolicy::allow:
      return webkit_policy_decision_use(decision);
    case NavigationPolicy::download:
      return webkit_policy_decision_download(decision);
    case NavigationPolicy::cancel:
      return webkit_policy_decision_ignore(decision);
  }
}

}  // namespace

NavigationEvents::NavigationEvents(WebView& owner, WebKitWebView* view, WebKitWebContext* context,
                                   PageActions& actions, LoadTimeout& timeout)
    : owner_(owner), view_(view), actions_(actions), timeout_(timeout) {
  const auto connect = [&](auto* instance, const char* signal, GCallback callback) {
    signals_.emplace_back(instance, signal, callback, this);
  };
  connect(view, "decide-policy", G_CALLBACK(onDecidePolicy));
  connect(view, "create", G_CALLBACK(onCreate));
  connect(view, "load-changed", G_CALLBACK(onLoadChanged));
  connect(view, "load-failed", G_CALLBACK(onLoadFailed));
  connect(view, "resource-load-started", G_CALLBACK(onResourceLoadStarted));
  connect(view, "load-failed-with-tls-errors", G_CALLBACK(onTlsErrors));
  connect(view, "web-process-terminated", G_CALLBACK(onWebProcessTerminated));
  connect(context, "download-started", G_CALLBACK(onDownloadStarted));
}

gboolean NavigationEvents::onDecidePolicy(WebKitWebView*, WebKitPolicyDecision* decision,
                                          WebKitPolicyDecisionType type, gpointer self) {
  auto& events = eventsOf(self);
  if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
    carryOut(events.decideResponse(WEBKIT_RESPONSE_POLICY_DECISION(decision)), decision);
  } else {
    const bool newWindow = type == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION;
    auto* action = webkit_navigation_policy_decision_get_navigation_action(
        WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    events.decideAction(action, newWindow,
                        [=](NavigationPolicy policy) { carryOut(policy, decision); });
  }
  return TRUE;
}

// Emitted for window.open() only: new windows of links and forms are decided in onDecidePolicy,
// before.
GtkWidget* NavigationEvents::onCreate(WebKitWebView*, WebKitNavigationAction* action,
                                      gpointer self) {
  // Without a new view the window is not opened, whatever the answer.
  eventsOf(self).decideAction(action, true, [](NavigationPolicy) {});
  return nullptr;
}

void NavigationEvents::decideAction(WebKitNavigationAction* action, bool newWindow,
                                    const NavigationDelegate::ActionPolicyHandler& answer) {
  if (delegate_ == nullptr) return answer(NavigationPolicy::cancel);

  NavigationAction description;
  WebKitURIRequest* request = webkit_navigation_action_get_request(action);
  description.url = urlOf(request);
  const auto pageAction =
      description.url ? actions_.takeNavigation(*description.url) : std::nullopt;
  description.type = typeOf(action, pageAction);
  if (pageAction) description.sourceFrame = pageAction->frame;
  // WebKitGTK does not say which frame is the target, only that there is one.
  if (!newWindow) description.targetFrame = FrameInfo{};
  description.request = std::make_shared<LinuxRequest>(request);
  // `shouldPerformDownload` stays false. The engine itself makes a download of an allowed link that
  // has the attribute, and then refuses redirects to other origins. A download that the application
  // asked for, of a link whose attribute the engine ignores, would follow them.
  delegate_->decidePolicyForAction(owner_, description, answer);
}

NavigationPolicy NavigationEvents::decideResponse(WebKitResponsePolicyDecision* decision) {
  if (delegate_ == nullptr) return NavigationPolicy::cancel;
  NavigationResponse response;
  // A service worker may answer with a response from elsewhere than the request's address.
  response.url = urlOf(webkit_response_policy_decision_get_response(decision));
  response.canShowMimeType =
      webkit_response_policy_decision_is_mime_type_supported(decision) != FALSE;
  return delegate_->decidePolicyForResponse(response);
}

void NavigationEvents::onLoadChanged(WebKitWebView*, WebKitLoadEvent event, gpointer self) {
  auto& events = eventsOf(self);
  // The view knows the URL after a redirect and once the page is there.
  events.urlBeingLoaded_.reset();
  switch (event) {
    case WEBKIT_LOAD_STARTED:
      return events.loadStarted();
    case WEBKIT_LOAD_REDIRECTED:
      return;
    case WEBKIT_LOAD_COMMITTED:
      return events.loadCommitted();
    case WEBKIT_LOAD_FINISHED:
      return events.loadFinished();
  }
}

void NavigationEvents::onResourceLoadStarted(WebKitWebView* view, WebKitWebResource* resource,
                                             WebKitURIRequest* request, gpointer self) {
  if (resource == webkit_web_view_get_main_resource(view))
    eventsOf(self).urlBeingLoaded_ = urlOf(request);
}

void NavigationEvents::loadStarted() {
  loadFailed_ = false;
  stoppedByTimeout_ = false;
  webProcessCrashed_ = false;
  truncation_.cancel();
  timeout_.start([this] { timedOut(); });
  if (delegate_ != nullptr) delegate_->didStartProvisionalNavigation();
}

void NavigationEvents::loadCommitted() {
  actions_.clear();
  // The time-out covers the main resource only, not what the page loads afterwards.
  if (WebKitWebResource* page = webkit_web_view_get_main_resource(view_)) {
    mainResource_ = SignalConnection(page, "finished", G_CALLBACK(onMainResourceFinished), this);
  }
}

void NavigationEvents::onMainResourceFinished(WebKitWebResource*, gpointer self) {
  eventsOf(self).timeout_.stop();
}

void NavigationEvents::loadFinished() {
  timeout_.stop();
  if (loadFailed_) return;
  if (delegate_ != nullptr) delegate_->didFinishNavigation();
  truncation_.check(view_, [this](const PlatformError& error) { fail(error); });
}

void NavigationEvents::timedOut() {
  stoppedByTimeout_ = true;
  webkit_web_view_stop_loading(view_);
}

gboolean NavigationEvents::onLoadFailed(WebKitWebView*, WebKitLoadEvent, const char*, GError* error,
                                        gpointer self) {
  auto& events = eventsOf(self);
  PlatformError reported = platformErrorFrom(*error);
  if (std::exchange(events.stoppedByTimeout_, false)) {
    reported = {"Navora", PlatformError::timedOutCode, g_strerror(ETIMEDOUT)};
  }
  events.fail(reported);
  return TRUE;
}

gboolean NavigationEvents::onTlsErrors(WebKitWebView*, const char*, GTlsCertificate*,
                                       GTlsCertificateFlags, gpointer self) {
  eventsOf(self).fail(
      {g_quark_to_string(G_TLS_ERROR), G_TLS_ERROR_BAD_CERTIFICATE, "Bad certificate"});
  return TRUE;
}

void NavigationEvents::fail(const PlatformError& error) {
  timeout_.stop();
  urlBeingLoaded_.reset();
  loadFailed_ = true;
  if (delegate_ != nullptr) delegate_->didFailNavigation(error);
}

void NavigationEvents::onWebProcessTerminated(WebKitWebView*, WebKitWebProcessTerminationReason,
                                              gpointer self) {
  auto& events = eventsOf(self);
  events.timeout_.stop();
  events.actions_.clear();
  events.webProcessCrashed_ = true;
  events.urlBeingLoaded_.reset();
  if (events.delegate_ != nullptr) events.delegate_->webContentProcessDidTerminate();
}

void NavigationEvents::onDownloadStarted(WebKitWebContext*, WebKitDownload* download,
                                         gpointer self) {
  auto& events = eventsOf(self);
  auto adopted = std::make_shared<LinuxDownload>(download);
  // Without a delegate, destroying `adopted` cancels the download.
  if (events.delegate_ != nullptr)
    events.delegate_->navigationDidBecomeDownload(std::move(adopted));
}

}  // namespace navora
