#include "capture/CaptureSubmitButton.h"

namespace navora {

void CaptureSubmitButton::paint(Canvas& canvas, Size bounds) const {
  const Rectangle area{0, 0, bounds.width, bounds.height};
  canvas.fillOval(area, hovered && enabled ? palette.buttonHover : palette.button);

  const double x = area.midX();
  const double y = area.midY();
  const StrokeStyle pen{.lineWidth = 2.7, .roundCaps = true, .roundJoins = true};
  canvas.strokePolyline({{x - 7, y}, {x + 7, y}}, palette.buttonInk, pen);
  canvas.strokePolyline({{x + 1, y + 6}, {x + 7, y}, {x + 1, y - 6}}, palette.buttonInk, pen);
}

}  // namespace navora
