#include "hosts/macos/application/AppKitMenus.h"

#include <variant>

#include "hosts/macos/system/Conversions.h"

using navora::DelegateAction;

@implementation NavoraMenuTarget

- (void)about:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(DelegateAction::about);
}

- (void)checkForUpdates:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(DelegateAction::checkForUpdates);
}

- (void)enableNotifications:(id)sender {
  if (self.delegate != nullptr) {
    self.delegate->performMenuAction(DelegateAction::enableNotifications);
  }
}

- (void)quickCapture:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(DelegateAction::quickCapture);
}

- (void)reload:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(DelegateAction::reload);
}

- (void)openInBrowser:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(DelegateAction::openInBrowser);
}

- (void)showWindow:(id)sender {
  if (self.delegate != nullptr) self.delegate->performMenuAction(DelegateAction::showWindow);
}

@end

namespace navora {

namespace {

SEL selectorOf(DelegateAction action) {
  switch (action) {
    case DelegateAction::about:
      return @selector(about:);
    case DelegateAction::checkForUpdates:
      return @selector(checkForUpdates:);
    case DelegateAction::enableNotifications:
      return @selector(enableNotifications:);
    case DelegateAction::quickCapture:
      return @selector(quickCapture:);
    case DelegateAction::reload:
      return @selector(reload:);
    case DelegateAction::openInBrowser:
      return @selector(openInBrowser:);
    case DelegateAction::showWindow:
      return @selector(showWindow:);
  }
}

SEL selectorOf(ApplicationAction action) {
  switch (action) {
    case ApplicationAction::hide:
      return @selector(hide:);
    case ApplicationAction::terminate:
      return @selector(terminate:);
  }
}

SEL selectorOf(EditAction action) {
  switch (action) {
    // Responders implement undo: and redo:, but AppKit declares neither.
    case EditAction::undo:
      return NSSelectorFromString(@"undo:");
    case EditAction::redo:
      return NSSelectorFromString(@"redo:");
    case EditAction::cut:
      return @selector(cut:);
    case EditAction::copy:
      return @selector(copy:);
    case EditAction::paste:
      return @selector(paste:);
    case EditAction::selectAll:
      return @selector(selectAll:);
  }
}

SEL selectorOf(WindowAction action) {
  switch (action) {
    case WindowAction::performMiniaturize:
      return @selector(performMiniaturize:);
    case WindowAction::performClose:
      return @selector(performClose:);
  }
}

SEL _Nullable actionOf(const MenuItem& item) {
  if (!item.action) return nullptr;
  return std::visit([](auto action) { return selectorOf(action); }, *item.action);
}

// Selects the target of an action, given the one for the core's actions.
struct TargetSelection {
  NavoraMenuTarget* delegateTarget;

  id operator()(DelegateAction) const { return delegateTarget; }
  id operator()(ApplicationAction) const { return NSApplication.sharedApplication; }
  // A nil target sends the action through the key window's responder chain.
  id _Nullable operator()(EditAction) const { return nil; }
  id _Nullable operator()(WindowAction) const { return nil; }
};

NSString* keyEquivalentOf(const MenuItem& item) {
  return toNSString(item.keyEquivalent ? std::string(1, item.keyEquivalent->key) : std::string());
}

}  // namespace

NSMenuItem* toNSMenuItem(const MenuItem& item, NavoraMenuTarget* target) {
  if (item.isSeparator()) return [NSMenuItem separatorItem];
  NSMenuItem* nsItem = [[NSMenuItem alloc] initWithTitle:toNSString(item.title)
                                                  action:actionOf(item)
                                           keyEquivalent:keyEquivalentOf(item)];
  if (item.keyEquivalent && item.keyEquivalent->shift) {
    nsItem.keyEquivalentModifierMask = NSEventModifierFlagCommand | NSEventModifierFlagShift;
  }
  // Without an action the item is informative, and the menu disables it.
  if (item.action) nsItem.target = std::visit(TargetSelection{target}, *item.action);
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
