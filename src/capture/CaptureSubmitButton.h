#pragma once

#include "capture/CaptureAppearance.h"
#include "platform/Canvas.h"
#include "platform/Geometry.h"

namespace navora {

// The round button with an arrow that sends the note. Whoever changes it has it painted again.
struct CaptureSubmitButton {
  CaptureAppearance palette = CaptureAppearance::fallback(true);
  bool hovered = false;
  bool enabled = false;

  void paint(Canvas& canvas, Size bounds) const;
};

}  // namespace navora
