#include "app/NavoraIcon.h"

#include <algorithm>
#include <array>

#include "support/FatalError.h"
#include "support/SelfTest.h"

namespace navora {
namespace {

constexpr int designSize = 64;
constexpr int doubleResolution = 2;
constexpr int pixelSize = designSize * doubleResolution;
constexpr double menuBarSize = 18;
constexpr Color black{0, 0, 0, 1};

bool hasTransparentCorners(const Bitmap& bitmap) {
  constexpr int last = pixelSize - 1;
  constexpr std::array corners = {std::array{0, 0}, std::array{last, 0}, std::array{0, last},
                                  std::array{last, last}};
  return std::ranges::all_of(corners, [&](const auto& corner) {
    const auto color = bitmap.colorAt(corner[0], corner[1]);
    return color && color->alpha == 0;
  });
}

bool showsMark(const Bitmap& bitmap) {
  constexpr int first = 8;
  constexpr int last = 116;
  constexpr int step = 4;
  for (int y = first; y <= last; y += step) {
    for (int x = first; x <= last; x += step) {
      const auto color = bitmap.colorAt(x, y);
      if (color && color->alpha > 0.5) return true;
    }
  }
  return false;
}

bool passesSelfTest(Imaging& imaging) {
  const auto bitmap = NavoraIcon::render(imaging, doubleResolution);
  return hasTransparentCorners(*bitmap) && showsMark(*bitmap) &&
         NavoraIcon::menuBarTemplate(imaging, menuBarSize)->isTemplate();
}

}  // namespace

void NavoraIcon::paint(Canvas& canvas) {
  // A single path, so that the crossings of legs and beams are stroked once.
  const Path gate = Path()
                        .moveTo({8, 47})
                        .curveTo({56, 47}, {25, 53}, {39, 53})
                        .moveTo({14, 37})
                        .lineTo({50, 37})
                        .moveTo({19, 42})
                        .lineTo({21, 10})
                        .moveTo({45, 42})
                        .lineTo({43, 10});
  canvas.strokePath(gate, black, {.lineWidth = 6, .roundCaps = true, .roundJoins = true});
}

std::shared_ptr<Bitmap> NavoraIcon::render(Imaging& imaging, int scale) {
  const auto bitmap = imaging.makeBitmap(designSize * scale, designSize * scale);
  if (!bitmap) fatalError("Could not create Navora menu bar image", "NavoraIcon", 39);
  bitmap->draw(scale, paint);
  return bitmap;
}

std::shared_ptr<Image> NavoraIcon::menuBarTemplate(Imaging& imaging, double size) {
  const auto bitmap = render(imaging, doubleResolution);
  bitmap->setSize({designSize, designSize});
  auto image = imaging.makeImage({size, size});
  image->addRepresentation(bitmap);
  image->setTemplate(true);
  return image;
}

void NavoraIcon::selfTest(Imaging& imaging) {
  if (!passesSelfTest(imaging))
    fatalError("Navora menu bar icon failed its transparency/template self-test", "NavoraIcon", 27);
  SelfTest::pass("Navora menu bar icon (transparent corners, visible mark, template)");
}

}  // namespace navora
