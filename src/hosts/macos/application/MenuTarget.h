#pragma once

#import <AppKit/AppKit.h>

#include "platform/Menu.h"

// What menu items are aimed at whose action is the core's: one method for each such action. Does
// nothing without a delegate.
@interface NavoraMenuTarget : NSObject
@property(nonatomic) navora::MenuDelegate* delegate;
- (void)about:(id)sender;
- (void)checkForUpdates:(id)sender;
- (void)enableNotifications:(id)sender;
- (void)quickCapture:(id)sender;
- (void)reload:(id)sender;
- (void)openInBrowser:(id)sender;
- (void)showWindow:(id)sender;
@end
