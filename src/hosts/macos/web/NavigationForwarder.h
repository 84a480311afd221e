#pragma once

#import <WebKit/WebKit.h>

#include "platform/NavigationDelegate.h"
#include "platform/PageDialogDelegate.h"

namespace navora {
class MacWebView;
}

// The navigation and UI delegate of one WKWebView, which forwards to the core's delegates. Without
// them it cancels navigations and shows no dialogs.
@interface NavoraNavigationForwarder : NSObject <WKNavigationDelegate, WKUIDelegate>

// The owner, which sets this to null when it is destroyed.
@property(nonatomic, nullable) navora::MacWebView* webView;
@property(nonatomic, nullable) navora::NavigationDelegate* navigationDelegate;
@property(nonatomic, nullable) navora::PageDialogDelegate* pageDialogDelegate;

// Reports, one turn of the main queue later, that a load failed because Foundation rejects its
// address.
- (void)reportUnsupportedUrl;

@end
