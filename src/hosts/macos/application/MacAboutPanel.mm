#include "hosts/macos/application/MacAboutPanel.h"

#import <AppKit/AppKit.h>

#include "hosts/macos/system/Conversions.h"

namespace navora {

void orderFrontAboutPanel(const AboutPanelOptions& options) {
  NSAttributedString* credits =
      [[NSAttributedString alloc] initWithString:toNSString(options.credits)];
  [NSApplication.sharedApplication orderFrontStandardAboutPanelWithOptions:@{
    NSAboutPanelOptionApplicationName : toNSString(options.applicationName),
    NSAboutPanelOptionCredits : credits,
  }];
}

}  // namespace navora
