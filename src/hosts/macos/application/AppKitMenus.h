#pragma once

#import <AppKit/AppKit.h>

#include "platform/Menu.h"

NS_ASSUME_NONNULL_BEGIN

// Target of the menu items whose action the core performs, with one method per action. Without a
// delegate the methods do nothing.
@interface NavoraMenuTarget : NSObject
@property(nonatomic, nullable) navora::MenuDelegate* delegate;
- (void)about:(id)sender;
- (void)checkForUpdates:(id)sender;
- (void)enableNotifications:(id)sender;
- (void)quickCapture:(id)sender;
- (void)reload:(id)sender;
- (void)openInBrowser:(id)sender;
- (void)showWindow:(id)sender;
@end

namespace navora {

// Menu items hold their target weakly: the caller must keep `target` as long as the menu is shown.
NSMenuItem* toNSMenuItem(const MenuItem& item, NavoraMenuTarget* target);
NSMenu* toNSMenu(const Menu& menu, NavoraMenuTarget* target);

}  // namespace navora

NS_ASSUME_NONNULL_END
