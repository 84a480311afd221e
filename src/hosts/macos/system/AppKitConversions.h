#pragma once

#import <AppKit/AppKit.h>

#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/KeyEvent.h"
#include "platform/WindowAppearance.h"

NS_ASSUME_NONNULL_BEGIN

namespace navora {

// Conversions between the core's values and AppKit's. Both have the origin of the screen in its
// lower left corner.

NSPoint toNSPoint(Point point);
NSRect toNSRect(const Rectangle& rectangle);
Rectangle toRectangle(NSRect rectangle);

NSColor* toNSColor(Color color);

// Returns nil for WindowAppearance::system: the window then follows the desktop.
NSAppearance* _Nullable toNSAppearance(WindowAppearance appearance);

// Keeps the device-independent modifier flags only.
KeyEvent toKeyEvent(NSEvent* event);

}  // namespace navora

NS_ASSUME_NONNULL_END
