#include "hosts/macos/capture/CaptureSubmitButton.h"

#include "hosts/macos/graphics/CoreGraphicsCanvas.h"
#include "hosts/macos/system/AppKitConversions.h"

@implementation CaptureSubmitButton

// Buttons are flipped; in the core y grows upwards.
- (BOOL)isFlipped {
  return NO;
}

- (void)drawRect:(NSRect)dirtyRect {
  if (self.delegate == nullptr) return;
  navora::CoreGraphicsCanvas canvas;
  self.delegate->paintSubmitButton(canvas, navora::toRectangle(self.bounds).size());
}

// In the visible rectangle the given one does not count; active always, because the panel is used
// while another application is the active one.
- (void)updateTrackingAreas {
  [super updateTrackingAreas];
  for (NSTrackingArea* area in self.trackingAreas) {
    [self removeTrackingArea:area];
  }
  [self addTrackingArea:[[NSTrackingArea alloc]
                            initWithRect:NSZeroRect
                                 options:NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways |
                                         NSTrackingInVisibleRect
                                   owner:self
                                userInfo:nil]];
}

- (void)mouseEntered:(NSEvent*)event {
  if (self.delegate != nullptr) self.delegate->submitButtonHovered(true);
}

- (void)mouseExited:(NSEvent*)event {
  if (self.delegate != nullptr) self.delegate->submitButtonHovered(false);
}

@end
