#pragma once

#include <memory>

#include "platform/Canvas.h"
#include "platform/Image.h"

namespace navora {

// The mark in the desktop's bar of status items: a gate of one arched beam, one tie beam and two
// slightly splayed legs, drawn by code.
class NavoraIcon {
 public:
  // The mark in its design space of 64 × 64 units.
  static void paint(Canvas& canvas);
  // The mark at `scale` pixels per unit on transparent ground. Running out of memory for it is
  // fatal.
  static std::shared_ptr<Bitmap> render(Imaging& imaging, int scale);
  // A template of `size` × `size` points with one bitmap of double resolution.
  static std::shared_ptr<Image> menuBarTemplate(Imaging& imaging, double size);

  // Draws the mark and looks at it: prints the verdict or stops the process.
  static void selfTest(Imaging& imaging);
};

}  // namespace navora
