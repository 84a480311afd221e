#pragma once

#import <AppKit/AppKit.h>

#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/KeyEvent.h"
#include "platform/WindowAppearance.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// Between the core's values and AppKit's. Both measure the screen from its lower left corner.

NSPoint toNSPoint(Point point);
NSRect toNSRect(const Rectangle& rectangle);
Rectangle toRectangle(NSRect rectangle);

NSColor* toNSColor(Color color);

// Nil follows the desktop.
NSAppearance* _Nullable toNSAppearance(WindowAppearance appearance);

// With the modifier flags as they are, less those that depend on the device.
KeyEvent toKeyEvent(NSEvent* event);

}  // namespace navora

NS_ASSUME_NONNULL_END
