#include "hosts/linux/workspace/ScreenGeometry.h"

#include <cmath>

namespace navora {
namespace {

int rounded(double value) {
  return static_cast<int>(std::lround(value));
}

}  // namespace

GdkMonitor* mainMonitor() {
  GdkDisplay* display = gdk_display_get_default();
  GdkMonitor* primary = gdk_display_get_primary_monitor(display);
  return primary != nullptr ? primary : gdk_display_get_monitor(display, 0);
}

ScreenGeometry::ScreenGeometry() {
  GdkMonitor* main = mainMonitor();
  if (main == nullptr) return;
  GdkRectangle area{};
  gdk_monitor_get_geometry(main, &area);
  left_ = area.x;
  bottom_ = area.y + area.height;
}

Rectangle ScreenGeometry::toCore(const GdkRectangle& rectangle) const {
  return {static_cast<double>(rectangle.x - left_),
          static_cast<double>(bottom_ - rectangle.y - rectangle.height),
          static_cast<double>(rectangle.width), static_cast<double>(rectangle.height)};
}

Point ScreenGeometry::toCore(int x, int y) const {
  return {static_cast<double>(x - left_), static_cast<double>(bottom_ - y)};
}

GdkRectangle ScreenGeometry::toGdk(const Rectangle& rectangle) const {
  return {left_ + rounded(rectangle.x), bottom_ - rounded(rectangle.maxY()),
          rounded(rectangle.width), rounded(rectangle.height)};
}

}  // namespace navora
