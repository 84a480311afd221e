#pragma once

#include <vector>

#include "platform/Color.h"
#include "platform/Geometry.h"

namespace navora {

// A path of lines and cubic Bézier curves. Every `moveTo` starts a subpath; the first element must
// be one.
class Path {
 public:
  enum class Kind { moveTo, lineTo, curveTo };
  struct Element {
    Kind kind;
    Point end;
    // Set for `curveTo` only.
    Point control1{};
    Point control2{};
    bool operator==(const Element&) const = default;
  };

  Path& moveTo(Point point) { return append({Kind::moveTo, point}); }
  Path& lineTo(Point point) { return append({Kind::lineTo, point}); }
  Path& curveTo(Point end, Point control1, Point control2) {
    return append({Kind::curveTo, end, control1, control2});
  }

  const std::vector<Element>& elements() const { return elements_; }

  bool operator==(const Path&) const = default;

 private:
  Path& append(Element element) {
    elements_.push_back(element);
    return *this;
  }

  std::vector<Element> elements_;
};

// A linear gradient whose stops have locations from 0 to 1. The gradient line passes through the
// centre of the painted shape's bounds at `angle` (degrees, counter-clockwise from the x axis), and
// is just long enough that the outermost corners get the end colours.
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

// A drawing surface in the coordinates of its view: the origin is the lower left corner and y grows
// upwards. Valid only during the call that receives it.
class Canvas {
 public:
  virtual ~Canvas() = default;

  // `radius` is clamped to half the shorter side.
  virtual void fillRoundedRectangle(const Rectangle& rectangle, double radius,
                                    const LinearGradient& gradient) = 0;
  virtual void strokeRoundedRectangle(const Rectangle& rectangle, double radius, Color color,
                                      const StrokeStyle& style) = 0;
  // Fills the ellipse inscribed in the rectangle.
  virtual void fillOval(const Rectangle& rectangle, Color color) = 0;
  // Strokes all subpaths in one operation, so that a translucent colour is not applied twice where
  // they cross.
  virtual void strokePath(const Path& path, Color color, const StrokeStyle& style) = 0;
};

}  // namespace navora
