#pragma once

#include "platform/Canvas.h"

namespace navora {

// Paints on the current graphics context, such as that of the view whose -drawRect: is running. It
// must not be flipped.
class CoreGraphicsCanvas final : public Canvas {
 public:
  void fillRoundedRectangle(const Rectangle& rectangle, double radius,
                            const LinearGradient& gradient) override;
  void strokeRoundedRectangle(const Rectangle& rectangle, double radius, Color color,
                              const StrokeStyle& style) override;
  void fillOval(const Rectangle& rectangle, Color color) override;
  void strokePath(const Path& path, Color color, const StrokeStyle& style) override;
};

}  // namespace navora
