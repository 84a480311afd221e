#include "hosts/macos/CapturePanel.h"

@implementation CapturePanel

- (BOOL)canBecomeKeyWindow {
  return YES;
}

- (BOOL)canBecomeMainWindow {
  return YES;
}

@end
