#pragma once

namespace navora::driver {

// Screen coordinates in pixels; the origin is the top left corner.
struct Point {
  int x = 0;
  int y = 0;
  bool operator==(const Point&) const = default;
};

struct Rectangle {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  Point center() const { return {x + width / 2, y + height / 2}; }
  bool empty() const { return width <= 0 || height <= 0; }
  bool contains(Point point) const {
    return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
  }
  Rectangle inset(int by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
  bool operator==(const Rectangle&) const = default;
};

}  // namespace navora::driver
