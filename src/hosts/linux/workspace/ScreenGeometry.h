#pragma once

#include <gdk/gdk.h>

#include "platform/Geometry.h"

namespace navora {

// Returns the primary monitor, or the first if the desktop names none; null without monitors.
GdkMonitor* mainMonitor();

// Converts between the core's screen coordinates, with the origin in the lower left corner of the
// main screen and y up, and GDK's, with the origin in the upper left corner of the whole desktop
// and y down.
class ScreenGeometry {
 public:
  // Uses the present arrangement of the monitors.
  ScreenGeometry();

  Rectangle toCore(const GdkRectangle& rectangle) const;
  Point toCore(int x, int y) const;
  // Rounds to whole pixels, from the upper edge, so that a panel that grows down keeps its top in
  // place.
  GdkRectangle toGdk(const Rectangle& rectangle) const;

 private:
  int left_ = 0;
  int bottom_ = 0;
};

}  // namespace navora
