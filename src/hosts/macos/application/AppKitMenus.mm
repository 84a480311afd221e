#include "hosts/macos/application/AppKitMenus.h"

#include "hosts/macos/system/Conversions.h"

using navora::MenuAction;

@implementation NavoraMenuTarget

- (void)about:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(MenuAction::about);
}

- (void)checkForUpdates:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(MenuAction::checkForUpdates);
}

- (void)enableNotifications:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(MenuAction::enableNotifications);
}

- (void)quickCapture:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(MenuAction::quickCapture);
}

- (void)reload:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(MenuAction::reload);
}

- (void)openInBrowser:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(MenuAction::openInBrowser);
}

- (void)showWindow:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(MenuAction::showWindow);
}

@end

namespace navora {

namespace {

SEL selectorOf(MenuAction action) {
  switch (action) {
    case MenuAction::about:
      return @selector(about:);
    case MenuAction::checkForUpdates:
      return @selector(checkForUpdates:);
    case MenuAction::enableNotifications:
      return @selector(enableNotifications:);
    case MenuAction::quickCapture:
      return @selector(quickCapture:);
    case MenuAction::hide:
      return @selector(hide:);
    case MenuAction::terminate:
      return @selector(terminate:);
    // Responders implement undo: and redo:, but AppKit declares neither.
    case MenuAction::undo:
      return NSSelectorFromString(@"undo:");
    case MenuAction::redo:
      return NSSelectorFromString(@"redo:");
    case MenuAction::cut:
      return @selector(cut:);
    case MenuAction::copy:
      return @selector(copy:);
    case MenuAction::paste:
      return @selector(paste:);
    case MenuAction::selectAll:
      return @selector(selectAll:);
    case MenuAction::reload:
      return @selector(reload:);
    case MenuAction::openInBrowser:
      return @selector(openInBrowser:);
    case MenuAction::showWindow:
      return @selector(showWindow:);
    case MenuAction::performMiniaturize:
      return @selector(performMiniaturize:);
    case MenuAction::performClose:
      return @selector(performClose:);
  }
}

// A nil target sends the action through the key window's responder chain.
id _Nullable targetOf(MenuTarget where, NavoraMenuTarget* target) {
  switch (where) {
    case MenuTarget::delegate:
      return target;
    case MenuTarget::application:
      return NSApplication.sharedApplication;
    case MenuTarget::responderChain:
      return nil;
  }
}

NSString* keyEquivalentOf(const MenuItem& item) {
  return toNSString(item.keyEquivalent ? std::string(1, item.keyEquivalent->key) : std::string());
}

}  // namespace

NSMenuItem* toNSMenuItem(const MenuItem& item, NavoraMenuTarget* target) {
  if (item.isSeparator()) return [NSMenuItem separatorItem];
  NSMenuItem* nsItem =
      [[NSMenuItem alloc] initWithTitle:toNSString(item.title)
                                 action:item.action ? selectorOf(*item.action) : nullptr
                          keyEquivalent:keyEquivalentOf(item)];
  if (item.keyEquivalent && item.keyEquivalent->shift) {
    nsItem.keyEquivalentModifierMask = NSEventModifierFlagCommand | NSEventModifierFlagShift;
  }
  // Without an action the item is informative, and the menu disables it.
  if (item.action) nsItem.target = targetOf(item.target, target);
  return nsItem;
}

NSMenu* toNSMenu(const Menu& menu, NavoraMenuTarget* target) {
  NSMenu* nsMenu = [[NSMenu alloc] initWithTitle:toNSString(menu.title)];
  for (const MenuItem& item : menu.items) {
    [nsMenu addItem:toNSMenuItem(item, target)];
  }
  return nsMenu;
}

}  // namespace navora
