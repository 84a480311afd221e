// Arguments, blocks and delegates of the wrong type.

// clang-format off: expected messages stay on one line.

#import <WebKit/WebKit.h>

#include "hosts/macos/system/MacWorkspace.h"

@interface NotADelegate : NSObject
@end
@implementation NotADelegate
@end

void passWrongArguments(WKWebView* webView, NSURL* url, NotADelegate* object) {
  [webView loadRequest:url];
  // expected-error@-1 {{cannot initialize a parameter of type 'NSURLRequest * _Nonnull' with an lvalue of type 'NSURL *__strong'}}
  // expected-note@WebKit/WKWebView.h:* {{passing argument to parameter 'request' here}}
  [webView evaluateJavaScript:@"1" completionHandler:^(NSString*, int) {}];
  // expected-error@-1 {{cannot initialize a parameter of type}}
  // expected-note@WebKit/WKWebView.h:* {{passing argument to parameter 'completionHandler' here}}
  webView.navigationDelegate = object;
  // expected-error@-1 {{assigning to}}
  navora::MacWorkspace().open(url);
  // expected-error@-1 {{reference to type 'const Url' could not bind to an lvalue of type 'NSURL *__strong'}}
  // expected-note@hosts/macos/system/MacWorkspace.h:* {{passing argument to parameter 'url' here}}
}
