#pragma once

#include "capture/CaptureAppearance.h"
#include "platform/Canvas.h"
#include "platform/Geometry.h"

namespace navora {

// The card behind the editor: rounded, with a gradient, and a border that lights up while the
// editor has the focus. Whoever changes it has it painted again.
struct CaptureSurface {
  CaptureAppearance palette = CaptureAppearance::fallback(true);
  bool focused = false;

  void paint(Canvas& canvas, Size bounds) const;
};

}  // namespace navora
