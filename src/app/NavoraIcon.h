#pragma once

#include <memory>

#include "platform/Canvas.h"
#include "platform/Image.h"

namespace navora {

// The status item's mark: a gate of an arched beam, a tie beam and two slightly splayed legs.
class NavoraIcon {
 public:
  // Draws the mark in its design space of 64 × 64 units.
  static void paint(Canvas& canvas);
  // Renders the mark on a transparent bitmap with `scale` pixels per unit. An allocation failure is
  // a fatal error.
  static std::shared_ptr<Bitmap> render(Imaging& imaging, int scale);
  // Returns a template image of `size` × `size` points with one bitmap at double resolution.
  static std::shared_ptr<Image> menuBarTemplate(Imaging& imaging, double size);

  // Renders the mark and checks its pixels: prints one line if they are right, otherwise a fatal
  // error.
  static void selfTest(Imaging& imaging);
};

}  // namespace navora
