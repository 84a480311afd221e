#pragma once

#include "capture/CaptureAppearance.h"
#include "platform/Canvas.h"
#include "platform/Geometry.h"

namespace navora {

// The card behind the editor: a rounded rectangle with a gradient, whose border changes colour
// while the editor has the focus. The owner requests a redraw after changing a member.
struct CaptureSurface {
  CaptureAppearance palette = CaptureAppearance::fallback(true);
  bool focused = false;

  void paint(Canvas& canvas, Size bounds) const;
};

// The round button with an arrow that sends the note. The owner requests a redraw after changing a
// member.
struct CaptureSubmitButton {
  CaptureAppearance palette = CaptureAppearance::fallback(true);
  bool hovered = false;
  bool enabled = false;

  void paint(Canvas& canvas, Size bounds) const;
};

}  // namespace navora
