#include "capture/CapturePainting.h"

namespace navora {

void CaptureSurface::paint(Canvas& canvas, Size bounds) const {
  // Inset by half the border's width, so that the stroke stays within the bounds.
  const Rectangle card = Rectangle{0, 0, bounds.width, bounds.height}.insetBy(0.5);
  const LinearGradient gradient{
      {{0, palette.surface}, {0.76, palette.surfaceEnd}, {1, palette.surfaceEnd}}, 305};
  canvas.fillRoundedRectangle(card, palette.radius, gradient);
  canvas.strokeRoundedRectangle(card, palette.radius, focused ? palette.focus : palette.border,
                                {.lineWidth = 1});
}

void CaptureSubmitButton::paint(Canvas& canvas, Size bounds) const {
  const Rectangle area{0, 0, bounds.width, bounds.height};
  canvas.fillOval(area, hovered && enabled ? palette.buttonHover : palette.button);

  const double x = area.midX();
  const double y = area.midY();
  const StrokeStyle pen{.lineWidth = 2.7, .roundCaps = true, .roundJoins = true};
  // One path, so that a translucent ink is laid on once at the tip, where shaft and head meet.
  const Path arrow = Path()
                         .moveTo({x - 7, y})
                         .lineTo({x + 7, y})
                         .moveTo({x + 1, y + 6})
                         .lineTo({x + 7, y})
                         .lineTo({x + 1, y - 6});
  canvas.strokePath(arrow, palette.buttonInk, pen);
}

}  // namespace navora
