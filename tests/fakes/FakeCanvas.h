#pragma once

#include <string>
#include <vector>

#include "platform/Canvas.h"

namespace navora {

// Records what is painted on it.
class FakeCanvas final : public Canvas {
 public:
  struct GradientFill {
    Rectangle rectangle;
    double radius = 0;
    LinearGradient gradient;
    bool operator==(const GradientFill&) const = default;
  };
  struct RectangleStroke {
    Rectangle rectangle;
    double radius = 0;
    Color color{};
    StrokeStyle style;
    bool operator==(const RectangleStroke&) const = default;
  };
  struct OvalFill {
    Rectangle rectangle;
    Color color{};
    bool operator==(const OvalFill&) const = default;
  };
  struct PathStroke {
    Path path;
    Color color{};
    StrokeStyle style;
    bool operator==(const PathStroke&) const = default;
  };

  std::vector<GradientFill> gradientFills;
  std::vector<RectangleStroke> rectangleStrokes;
  std::vector<OvalFill> ovalFills;
  std::vector<PathStroke> pathStrokes;
  // The kinds of operations, in order.
  std::vector<std::string> order;

  void fillRoundedRectangle(const Rectangle& rectangle, double radius,
                            const LinearGradient& gradient) override {
    order.push_back("fill rectangle");
    gradientFills.push_back({rectangle, radius, gradient});
  }
  void strokeRoundedRectangle(const Rectangle& rectangle, double radius, Color color,
                              const StrokeStyle& style) override {
    order.push_back("stroke rectangle");
    rectangleStrokes.push_back({rectangle, radius, color, style});
  }
  void fillOval(const Rectangle& rectangle, Color color) override {
    order.push_back("fill oval");
    ovalFills.push_back({rectangle, color});
  }
  void strokePath(const Path& path, Color color, const StrokeStyle& style) override {
    order.push_back("stroke path");
    pathStrokes.push_back({path, color, style});
  }
};

}  // namespace navora
