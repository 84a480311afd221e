#include "hosts/macos/application/MacMenus.h"

#include "hosts/macos/system/Conversions.h"

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
    // AppKit declares these two nowhere, though its responders have them.
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

// Without a target the action goes to the key window through the responder chain.
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
  // An item that only informs has no action, and the menu turns it off by itself.
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

MacMenus::MacMenus() : target_([[NavoraMenuTarget alloc] init]) {}

MacMenus::~MacMenus() {
  target_.delegate = nullptr;
}

void MacMenus::setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) {
  target_.delegate = &delegate;
  NSApplication* application = NSApplication.sharedApplication;
  NSMenu* mainMenu = [[NSMenu alloc] init];
  application.mainMenu = mainMenu;
  for (const Menu& menu : menus) {
    NSMenuItem* top = [[NSMenuItem alloc] initWithTitle:toNSString(menu.title)
                                                 action:nullptr
                                          keyEquivalent:@""];
    top.submenu = toNSMenu(menu, target_);
    [mainMenu addItem:top];
    if (menu.role == Menu::Role::windows) application.windowsMenu = top.submenu;
  }
}

}  // namespace navora
