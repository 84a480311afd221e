#pragma once

#include "platform/Canvas.h"

namespace navora {

// Paints on the current graphics context, for instance that of the view whose -drawRect: is
// running. The context must not be flipped.
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
