#include "hosts/macos/window/SystemAppearance.h"

#import <AppKit/AppKit.h>

#include "hosts/macos/system/KeyValueObservation.h"

namespace navora {

bool systemIsDark() {
  NSAppearance* appearance = [NSApplication sharedApplication].effectiveAppearance;
  NSAppearanceName match = [appearance
      bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
  return [match isEqualToString:NSAppearanceNameDarkAqua];
}

// As long as nobody sets the application's own appearance, this one is the desktop's.
std::unique_ptr<ObserverToken> observeSystemAppearance(std::function<void()> callback) {
  return observeKeyPath([NSApplication sharedApplication], @"effectiveAppearance",
                        std::move(callback));
}

}  // namespace navora
