#include "hosts/macos/CaptureSurface.h"

#include "hosts/macos/AppKitConversions.h"
#include "hosts/macos/CoreGraphicsCanvas.h"

@implementation CaptureSurface

- (void)drawRect:(NSRect)dirtyRect {
  if (self.delegate == nullptr) return;
  navora::CoreGraphicsCanvas canvas;
  self.delegate->paintSurface(canvas, navora::toRectangle(self.bounds).size());
}

@end
