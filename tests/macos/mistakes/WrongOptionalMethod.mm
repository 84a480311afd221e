// A delegate method with a mistyped name, which WebKit would never call.
//
// expected-no-diagnostics: only undeclared_methods.py finds it.

#import <WebKit/WebKit.h>

@interface DelegateWithMistypedMethod : NSObject <WKNavigationDelegate>
@end

@implementation DelegateWithMistypedMethod

- (void)webView:(WKWebView*)webView didFinishNavigation:(WKNavigation*)navigation {
}

- (void)webView:(WKWebView*)webView didFinishNavigating:(WKNavigation*)navigation {
}

@end
