#include "capture/CaptureSubmitButton.h"

namespace navora {

void CaptureSubmitButton::paint(Canvas& canvas, Size bounds) const {
  const Rectangle area{0, 0, bounds.width, bounds.height};
  canvas.fillOval(area, hovered && enabled ? palette.buttonHover : palette.button);

  const double x = area.midX();
  const double y = area.midY();
  const StrokeStyle pen{.lineWidth = 2.7, .roundCaps = true, .roundJoins = true};
  const Path shaft = Path().moveTo({x - 7, y}).lineTo({x + 7, y});
  const Path head = Path().moveTo({x + 1, y + 6}).lineTo({x + 7, y}).lineTo({x + 1, y - 6});
  canvas.strokePath(shaft, palette.buttonInk, pen);
  canvas.strokePath(head, palette.buttonInk, pen);
}

}  // namespace navora
