#include "hosts/macos/capture/CapturePanel.h"

@implementation CapturePanel

- (BOOL)canBecomeKeyWindow {
  return YES;
}

- (BOOL)canBecomeMainWindow {
  return YES;
}

@end
