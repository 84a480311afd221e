// Messages that the receiver's class does not declare.

// clang-format off: expected messages stay on one line.

#import <WebKit/WebKit.h>

void sendMessages(WKWebView* webView, NSButton* button) {
  [webView loadAddress:@"https://navora.example/"];
  // expected-error@-1 {{no visible @interface for 'WKWebView' declares the selector 'loadAddress:'}}
  [NSApplication theApplication];
  // expected-error@-1 {{no known class method for selector 'theApplication'}}
  button.action = @selector(thisActionExistsNowhere:);
  // expected-error@-1 {{undeclared selector 'thisActionExistsNowhere:'}}
  button.isRound = YES;
  // expected-error@-1 {{property 'isRound' not found on object of type 'NSButton *'}}
}
