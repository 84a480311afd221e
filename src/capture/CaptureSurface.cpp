#include "capture/CaptureSurface.h"

namespace navora {

void CaptureSurface::paint(Canvas& canvas, Size bounds) const {
  // Half of the border's width, so that none of it falls outside.
  const Rectangle card = Rectangle{0, 0, bounds.width, bounds.height}.insetBy(0.5);
  const LinearGradient gradient{
      {{0, palette.surface}, {0.76, palette.surfaceEnd}, {1, palette.surfaceEnd}}, 305};
  canvas.fillRoundedRectangle(card, palette.radius, gradient);
  canvas.strokeRoundedRectangle(card, palette.radius, focused ? palette.focus : palette.border,
                                {.lineWidth = 1});
}

}  // namespace navora
