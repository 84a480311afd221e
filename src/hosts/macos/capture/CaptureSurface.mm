#include "hosts/macos/capture/CaptureSurface.h"

#include "hosts/macos/graphics/CoreGraphicsCanvas.h"
#include "hosts/macos/system/AppKitConversions.h"

@implementation CaptureSurface

- (void)drawRect:(NSRect)dirtyRect {
  if (self.delegate == nullptr) return;
  navora::CoreGraphicsCanvas canvas;
  self.delegate->paintSurface(canvas, navora::toRectangle(self.bounds).size());
}

@end
