#pragma once

#import <WebKit/WebKit.h>

#include "platform/NavigationDelegate.h"
#include "platform/PageDialogDelegate.h"

namespace navora {
class MacWebView;
}

// Hands the questions and reports of one WKWebView to the core. Without a delegate every question
// is answered neutrally: navigations are cancelled and dialogs are not shown.
@interface NavoraNavigationForwarder : NSObject <WKNavigationDelegate, WKUIDelegate>

// The owner; null once it goes away.
@property(nonatomic, nullable) navora::MacWebView* webView;
@property(nonatomic, nullable) navora::NavigationDelegate* navigationDelegate;
@property(nonatomic, nullable) navora::PageDialogDelegate* pageDialogDelegate;

// Reports, later, the failure of a load whose address the platform does not accept.
- (void)reportUnsupportedUrl;

@end
