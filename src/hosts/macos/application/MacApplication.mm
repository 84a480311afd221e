#include "hosts/macos/application/MacApplication.h"

#include "hosts/macos/application/AppKitMenus.h"
#include "hosts/macos/system/Conversions.h"

@interface NavoraApplicationForwarder : NSObject <NSApplicationDelegate>
@property(nonatomic, nullable) navora::ApplicationDelegate* delegate;
@end

@implementation NavoraApplicationForwarder

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  if (self.delegate != nullptr) self.delegate->applicationDidFinishLaunching();
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)sender
                    hasVisibleWindows:(BOOL)hasVisibleWindows {
  return self.delegate == nullptr ||
         self.delegate->applicationShouldHandleReopen(hasVisibleWindows);
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)sender {
  return self.delegate != nullptr &&
         self.delegate->applicationShouldTerminateAfterLastWindowClosed();
}

- (void)applicationDidBecomeActive:(NSNotification*)notification {
  if (self.delegate != nullptr) self.delegate->applicationDidBecomeActive();
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  if (self.delegate != nullptr) self.delegate->applicationWillTerminate();
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application {
  return YES;
}

@end

namespace navora {

MacApplication::MacApplication()
    : application_([NSApplication sharedApplication]),
      forwarder_([[NavoraApplicationForwarder alloc] init]),
      menuTarget_([[NavoraMenuTarget alloc] init]) {}

MacApplication::~MacApplication() {
  forwarder_.delegate = nullptr;
  menuTarget_.delegate = nullptr;
}

int MacApplication::run(ApplicationDelegate& delegate) {
  forwarder_.delegate = &delegate;
  application_.delegate = forwarder_;
  [application_ setActivationPolicy:NSApplicationActivationPolicyRegular];
  [application_ run];
  return 0;
}

void MacApplication::activateIgnoringOtherApplications() {
  [application_ activateIgnoringOtherApps:YES];
}

void MacApplication::setMainMenu(const std::vector<Menu>& menus, MenuDelegate& delegate) {
  menuTarget_.delegate = &delegate;
  NSMenu* mainMenu = [[NSMenu alloc] init];
  application_.mainMenu = mainMenu;
  for (const Menu& menu : menus) {
    NSMenuItem* top = [[NSMenuItem alloc] initWithTitle:toNSString(menu.title)
                                                 action:nullptr
                                          keyEquivalent:@""];
    top.submenu = toNSMenu(menu, menuTarget_);
    [mainMenu addItem:top];
    if (menu.role == Menu::Role::windows) application_.windowsMenu = top.submenu;
  }
}

void MacApplication::orderFrontStandardAboutPanel(const AboutPanelOptions& options) {
  NSAttributedString* credits =
      [[NSAttributedString alloc] initWithString:toNSString(options.credits)];
  [application_ orderFrontStandardAboutPanelWithOptions:@{
    NSAboutPanelOptionApplicationName : toNSString(options.applicationName),
    NSAboutPanelOptionCredits : credits,
  }];
}

}  // namespace navora
