// A delegate method that WebKit would never call, because it does not exist under this name.
//
// expected-no-diagnostics: only the check of method names finds it.

#import <WebKit/WebKit.h>

@interface DelegateWithMistypedMethod : NSObject <WKNavigationDelegate>
@end

@implementation DelegateWithMistypedMethod

- (void)webView:(WKWebView*)webView didFinishNavigation:(WKNavigation*)navigation {
}

- (void)webView:(WKWebView*)webView didFinishNavigating:(WKNavigation*)navigation {
}

@end
