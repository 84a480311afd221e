#pragma once

namespace navora {

// All lengths are in points, the display's logical unit.
struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

// `x` and `y` are the left and bottom edges; y grows upwards. The origin is the lower left corner
// of the main screen for windows, of the view for its contents.
struct Rectangle {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  double midX() const { return x + width / 2; }
  double midY() const { return y + height / 2; }
  double maxX() const { return x + width; }
  double maxY() const { return y + height; }
  Size size() const { return {width, height}; }
  // The left and lower edges are inside, the right and upper edges outside.
  bool contains(Point point) const {
    return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
  }
  Rectangle insetBy(double distance) const {
    return {x + distance, y + distance, width - 2 * distance, height - 2 * distance};
  }

  bool operator==(const Rectangle&) const = default;
};

}  // namespace navora
