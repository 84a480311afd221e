#include "hosts/macos/application/MenuTarget.h"

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
