#include "hosts/macos/system/AppKitConversions.h"

namespace navora {

NSPoint toNSPoint(Point point) {
  return NSMakePoint(point.x, point.y);
}

NSRect toNSRect(const Rectangle& rectangle) {
  return NSMakeRect(rectangle.x, rectangle.y, rectangle.width, rectangle.height);
}

Rectangle toRectangle(NSRect rectangle) {
  return Rectangle{.x = rectangle.origin.x,
                   .y = rectangle.origin.y,
                   .width = rectangle.size.width,
                   .height = rectangle.size.height};
}

NSColor* toNSColor(Color color) {
  return [NSColor colorWithSRGBRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

NSAppearance* _Nullable toNSAppearance(WindowAppearance appearance) {
  switch (appearance) {
    case WindowAppearance::system:
      return nil;
    case WindowAppearance::light:
      return [NSAppearance appearanceNamed:NSAppearanceNameAqua];
    case WindowAppearance::dark:
      return [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
  }
}

KeyEvent toKeyEvent(NSEvent* event) {
  const NSEventModifierFlags modifiers =
      event.modifierFlags & NSEventModifierFlagDeviceIndependentFlagsMask;
  return KeyEvent{.keyCode = event.keyCode, .modifiers = static_cast<std::uint32_t>(modifiers)};
}

}  // namespace navora
