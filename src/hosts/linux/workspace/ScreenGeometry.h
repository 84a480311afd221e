#pragma once

#include <gdk/gdk.h>

#include "platform/Geometry.h"

namespace navora {

// The primary one, or the first where the desktop names none; null without any.
GdkMonitor* mainMonitor();

// Between the core's screen coordinates, which grow upwards from the lower left corner of the main
// screen, and GDK's, which grow downwards from the upper left corner of all screens.
class ScreenGeometry {
 public:
  // For the screens as they are now.
  ScreenGeometry();

  Rectangle toCore(const GdkRectangle& rectangle) const;
  Point toCore(int x, int y) const;
  // Rounded to whole pixels; the upper edge is kept exactly, as the panel grows downwards.
  GdkRectangle toGdk(const Rectangle& rectangle) const;

 private:
  int left_ = 0;
  int bottom_ = 0;
};

}  // namespace navora
