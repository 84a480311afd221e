#pragma once

#include <vector>

#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/Path.h"

namespace navora {

// Stops by location from 0 to 1. The line runs through the middle of the painted path's bounds in
// the direction of `angle` (degrees, counter-clockwise from the x axis) and is as long as the
// bounds need for their outermost corners to get the end colours.
struct LinearGradient {
  struct Stop {
    double location = 0;
    Color color;
    bool operator==(const Stop&) const = default;
  };
  std::vector<Stop> stops;
  double angle = 0;
  bool operator==(const LinearGradient&) const = default;
};

struct StrokeStyle {
  double lineWidth = 1;
  bool roundCaps = false;
  bool roundJoins = false;
  bool operator==(const StrokeStyle&) const = default;
};

// What a view paints on, in the view's coordinates: the origin is its lower left corner and y grows
// upwards. Valid during the call that hands it over.
class Canvas {
 public:
  virtual ~Canvas() = default;

  // A radius of more than half a side counts as that half.
  virtual void fillRoundedRectangle(const Rectangle& rectangle, double radius,
                                    const LinearGradient& gradient) = 0;
  virtual void strokeRoundedRectangle(const Rectangle& rectangle, double radius, Color color,
                                      const StrokeStyle& style) = 0;
  // The ellipse inscribed in the rectangle.
  virtual void fillOval(const Rectangle& rectangle, Color color) = 0;
  // All subpaths at once: where they cross, the colour is not laid on twice.
  virtual void strokePath(const Path& path, Color color, const StrokeStyle& style) = 0;
};

}  // namespace navora
