#include "hosts/macos/web/MacWebView.h"

#include <utility>

#include "hosts/macos/system/Conversions.h"
#include "hosts/macos/system/FoundationJson.h"
#include "hosts/macos/web/NavigationConversions.h"
#include "hosts/macos/web/NavigationForwarder.h"
#include "platform/ScriptMessage.h"

// Shows the page. Hiding a covered page instead would tell the page that it is hidden.
@interface NavoraPageView : WKWebView
@property(nonatomic) BOOL covered;
@end

@implementation NavoraPageView

- (BOOL)acceptsFirstResponder {
  return !self.covered && [super acceptsFirstResponder];
}

- (BOOL)becomeFirstResponder {
  return !self.covered && [super becomeFirstResponder];
}

- (BOOL)canBecomeKeyView {
  return !self.covered && [super canBecomeKeyView];
}

@end

// Forwards the page's messages to the core. `handler` may be set to null at any time.
@interface NavoraScriptMessageForwarder : NSObject <WKScriptMessageHandler>
@property(nonatomic, nullable) navora::ScriptMessageHandler* handler;
@end

@implementation NavoraScriptMessageForwarder

- (void)userContentController:(WKUserContentController*)userContentController
      didReceiveScriptMessage:(WKScriptMessage*)message {
  if (self.handler == nullptr) return;
  self.handler->didReceiveScriptMessage(navora::ScriptMessage{
      .name = navora::toString(message.name),
      .body = navora::toJsonText(message.body).value_or("null"),
      .frame = navora::toFrameInfo(message.frameInfo),
  });
}

@end

namespace navora {

namespace {

WKUserScript* toUserScript(const UserScript& script) {
  const bool atStart = script.injectionTime == UserScript::InjectionTime::documentStart;
  return [[WKUserScript alloc] initWithSource:toNSString(script.source)
                                injectionTime:atStart ? WKUserScriptInjectionTimeAtDocumentStart
                                                      : WKUserScriptInjectionTimeAtDocumentEnd
                             forMainFrameOnly:YES];
}

WKWebViewConfiguration* makeConfiguration(const WebViewConfiguration& description,
                                          NavoraScriptMessageForwarder* messages) {
  WKWebViewConfiguration* configuration = [[WKWebViewConfiguration alloc] init];
  configuration.websiteDataStore = [WKWebsiteDataStore defaultDataStore];
  WKUserContentController* content = configuration.userContentController;
  for (const std::string& name : description.messageHandlerNames) {
    [content addScriptMessageHandler:messages name:toNSString(name)];
  }
  for (const UserScript& script : description.userScripts) {
    [content addUserScript:toUserScript(script)];
  }
  return configuration;
}

NavoraPageView* makeWebView(const WebViewConfiguration& description,
                            NavoraScriptMessageForwarder* messages) {
  NavoraPageView* webView =
      [[NavoraPageView alloc] initWithFrame:NSZeroRect
                              configuration:makeConfiguration(description, messages)];
  webView.allowsBackForwardNavigationGestures = YES;
  webView.customUserAgent = nil;
  return webView;
}

NSURLRequestCachePolicy toCachePolicy(CachePolicy policy) {
  switch (policy) {
    case CachePolicy::useProtocolCachePolicy:
      return NSURLRequestUseProtocolCachePolicy;
    case CachePolicy::reloadIgnoringLocalCacheData:
      return NSURLRequestReloadIgnoringLocalCacheData;
  }
}

WebView::EvaluationResult toEvaluationResult(id _Nullable result, NSError* _Nullable error) {
  if (error != nil) return Unexpected(toPlatformError(error));
  return toJson(result).value_or(Json());
}

HttpCookie toHttpCookie(NSHTTPCookie* cookie) {
  NSDate* expires = cookie.expiresDate;
  return HttpCookie{
      .name = toString(cookie.name),
      .value = toString(cookie.value),
      .domain = toString(cookie.domain),
      .path = toString(cookie.path),
      .isSecure = cookie.secure == YES,
      .expires = expires == nil
                     ? std::nullopt
                     : std::optional(dateFromSecondsSince1970(expires.timeIntervalSince1970)),
  };
}

}  // namespace

MacWebView::MacWebView(const WebViewConfiguration& configuration)
    : navigationForwarder_([[NavoraNavigationForwarder alloc] init]),
      messageForwarder_([[NavoraScriptMessageForwarder alloc] init]),
      webView_(makeWebView(configuration, messageForwarder_)) {
  messageForwarder_.handler = configuration.messageHandler;
  navigationForwarder_.webView = this;
  webView_.navigationDelegate = navigationForwarder_;
  webView_.UIDelegate = navigationForwarder_;
}

MacWebView::~MacWebView() {
  lifetime_.renew();
  messageForwarder_.handler = nullptr;
  navigationForwarder_.webView = nullptr;
  navigationForwarder_.navigationDelegate = nullptr;
  navigationForwarder_.pageDialogDelegate = nullptr;
  webView_.navigationDelegate = nil;
  webView_.UIDelegate = nil;
  // The content controller retains its message handlers.
  [webView_.configuration.userContentController removeAllScriptMessageHandlers];
  [webView_ removeFromSuperview];
}

NSView* _Nonnull MacWebView::nsView() const {
  return webView_;
}

void MacWebView::setCovered(bool covered) {
  webView_.covered = covered;
}

void MacWebView::setNavigationDelegate(NavigationDelegate* _Nullable delegate) {
  navigationForwarder_.navigationDelegate = delegate;
}

void MacWebView::setPageDialogDelegate(PageDialogDelegate* _Nullable delegate) {
  navigationForwarder_.pageDialogDelegate = delegate;
}

void MacWebView::load(const WebRequest& request) {
  NSURL* url = toNSURL(request.url);
  if (url == nil) {
    [navigationForwarder_ reportUnsupportedUrl];
    return;
  }
  [webView_ loadRequest:[NSURLRequest requestWithURL:url
                                         cachePolicy:toCachePolicy(request.cachePolicy)
                                     timeoutInterval:request.timeoutSeconds]];
}

void MacWebView::load(const PlatformRequest& request) {
  // `request` must come from a navigation of this view.
  NSURLRequest* urlRequest = static_cast<const MacRequest&>(request).urlRequest();
  if (urlRequest == nil) return;
  // The core calls this from within a policy decision, which must reach WebKit first.
  WKWebView* __weak weakWebView = webView_;
  dispatch_async(dispatch_get_main_queue(), ^{
    [weakWebView loadRequest:urlRequest];
  });
}

std::optional<Url> MacWebView::url() const {
  return toUrl(webView_.URL);
}

bool MacWebView::isLoading() const {
  return webView_.isLoading;
}

void MacWebView::evaluateJavaScript(const std::string& script, EvaluationCompletion completion) {
  if (!completion) {
    [webView_ evaluateJavaScript:toNSString(script) completionHandler:nil];
    return;
  }
  const EvaluationCompletion guarded = lifetime_.guard(std::move(completion));
  [webView_ evaluateJavaScript:toNSString(script)
             completionHandler:^(id _Nullable result, NSError* _Nullable error) {
               guarded(toEvaluationResult(result, error));
             }];
}

void MacWebView::allCookies(CookiesCompletion completion) {
  const CookiesCompletion guarded = lifetime_.guard(std::move(completion));
  WKHTTPCookieStore* store = webView_.configuration.websiteDataStore.httpCookieStore;
  [store getAllCookies:^(NSArray<NSHTTPCookie*>* cookies) {
    std::vector<HttpCookie> result;
    for (NSHTTPCookie* cookie in cookies) {
      result.push_back(toHttpCookie(cookie));
    }
    guarded(std::move(result));
  }];
}

}  // namespace navora
