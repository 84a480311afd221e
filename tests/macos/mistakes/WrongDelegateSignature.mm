// A delegate method whose parameters differ from the arguments that the framework passes.

// clang-format off: expected messages stay on one line.

#import <WebKit/WebKit.h>

@interface DelegateWithWrongArguments : NSObject <WKNavigationDelegate>
@end

@implementation DelegateWithWrongArguments
- (void)webView:(WKWebView*)webView
    decidePolicyForNavigationAction:(WKNavigationAction*)navigationAction
                    decisionHandler:(void (^)(BOOL))decisionHandler {
  // expected-error@-1 {{conflicting parameter types in implementation of 'webView:decidePolicyForNavigationAction:decisionHandler:'}}
  // expected-note@WebKit/WKNavigation.h:* {{previous definition is here}}
}
@end
