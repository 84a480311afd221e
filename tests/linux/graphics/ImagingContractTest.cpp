#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "app/NavoraIcon.h"
#include "fakes/FakeImaging.h"
#include "hosts/linux/graphics/LinuxImaging.h"

namespace navora {
namespace {

constexpr Color clear{0, 0, 0, 0};
constexpr Color opaqueRed{1, 0, 0, 1};

LinearGradient plain(Color color) {
  return {{{0, color}, {1, color}}, 0};
}

void expectNear(const std::optional<Color>& color, Color wanted) {
  constexpr double oneOf256Levels = 1.0 / 255;
  ASSERT_TRUE(color);
  EXPECT_NEAR(color->red, wanted.red, 2 * oneOf256Levels);
  EXPECT_NEAR(color->green, wanted.green, 2 * oneOf256Levels);
  EXPECT_NEAR(color->blue, wanted.blue, 2 * oneOf256Levels);
  EXPECT_NEAR(color->alpha, wanted.alpha, oneOf256Levels);
}

// Tests the contract of Imaging with the fake and the Linux implementation.
class OnPaper {
 public:
  Imaging& imaging() { return imaging_; }
  std::shared_ptr<Bitmap> makeTooLargeBitmap() {
    imaging_.hasMemory = false;
    return imaging_.makeBitmap(4, 4);
  }

 private:
  FakeImaging imaging_;
};

class ByCairo {
 public:
  Imaging& imaging() { return imaging_; }
  std::shared_ptr<Bitmap> makeTooLargeBitmap() { return imaging_.makeBitmap(1'000'000, 1'000'000); }

 private:
  LinuxImaging imaging_;
};

template <typename Implementation>
class ImagingContractTest : public testing::Test {
 protected:
  Imaging& imaging() { return implementation_.imaging(); }
  std::shared_ptr<Bitmap> makeBitmap(int wide, int high) {
    return imaging().makeBitmap(wide, high);
  }

  Implementation implementation_;
};

using ImagingImplementations = testing::Types<OnPaper, ByCairo>;
TYPED_TEST_SUITE(ImagingContractTest, ImagingImplementations);

TYPED_TEST(ImagingContractTest, ANewBitmapIsTransparent) {
  const auto bitmap = this->makeBitmap(3, 2);
  EXPECT_EQ(bitmap->pixelsWide(), 3);
  EXPECT_EQ(bitmap->pixelsHigh(), 2);
  for (int y = 0; y < 2; ++y) {
    for (int x = 0; x < 3; ++x)
      EXPECT_EQ(bitmap->colorAt(x, y), clear) << x << ' ' << y;
  }
}

TYPED_TEST(ImagingContractTest, HasNoColoursOutsideItsBounds) {
  const auto bitmap = this->makeBitmap(3, 2);
  bitmap->draw(1, [](Canvas& canvas) {
    canvas.fillRoundedRectangle({-9, -9, 18, 18}, 0, plain(opaqueRed));
  });
  EXPECT_EQ(bitmap->colorAt(2, 1), opaqueRed);
  EXPECT_EQ(bitmap->colorAt(-1, 0), std::nullopt);
  EXPECT_EQ(bitmap->colorAt(0, -1), std::nullopt);
  EXPECT_EQ(bitmap->colorAt(3, 0), std::nullopt);
  EXPECT_EQ(bitmap->colorAt(0, 2), std::nullopt);
}

TYPED_TEST(ImagingContractTest, IsPaintedWithYUpAndReadWithYDown) {
  const auto bitmap = this->makeBitmap(20, 10);
  bitmap->draw(
      2, [](Canvas& canvas) { canvas.fillRoundedRectangle({1, 1, 3, 1}, 0, plain(opaqueRed)); });
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 20; ++x) {
      const bool inside = x >= 2 && x < 8 && y >= 6 && y < 8;
      EXPECT_EQ(bitmap->colorAt(x, y), inside ? opaqueRed : clear) << x << ' ' << y;
    }
  }
}

TYPED_TEST(ImagingContractTest, IsPaintedOnceSynchronously) {
  int count = 0;
  this->makeBitmap(4, 4)->draw(1, [&](Canvas&) { ++count; });
  EXPECT_EQ(count, 1);
}

TYPED_TEST(ImagingContractTest, EveryDrawingStartsTransparent) {
  const auto bitmap = this->makeBitmap(4, 4);
  bitmap->draw(
      1, [](Canvas& canvas) { canvas.fillRoundedRectangle({0, 0, 4, 4}, 0, plain(opaqueRed)); });
  ASSERT_EQ(bitmap->colorAt(2, 2), opaqueRed);
  bitmap->draw(1, [](Canvas&) {});
  EXPECT_EQ(bitmap->colorAt(2, 2), clear);
}

TYPED_TEST(ImagingContractTest, ReturnsThePaintedColours) {
  const Color glass{1, 0.5, 0.25, 0.5};
  const auto bitmap = this->makeBitmap(8, 4);
  bitmap->draw(1, [&](Canvas& canvas) {
    canvas.fillRoundedRectangle({0, 0, 4, 4}, 0, plain({0, 0, 1, 1}));
    canvas.fillRoundedRectangle({0, 0, 8, 4}, 0, plain(glass));
  });
  expectNear(bitmap->colorAt(6, 1), glass);
  expectNear(bitmap->colorAt(1, 1), {0.5, 0.25, 0.625, 1});
}

TYPED_TEST(ImagingContractTest, EveryShapeCoversItsArea) {
  const auto bitmap = this->makeBitmap(80, 20);
  bitmap->draw(1, [](Canvas& canvas) {
    canvas.fillRoundedRectangle({0, 0, 20, 20}, 50, plain(opaqueRed));
    canvas.strokeRoundedRectangle({22, 2, 16, 16}, 4, opaqueRed, {.lineWidth = 4});
    canvas.fillOval({40, 5, 20, 10}, opaqueRed);
    canvas.strokePath(Path().moveTo({62, 10}).curveTo({78, 10}, {62, 20}, {78, 20}), opaqueRed,
                      {.lineWidth = 4});
  });
  const auto alphaAt = [&](int x, int y) { return bitmap->colorAt(x, y)->alpha; };
  // A disc does not cover the corners.
  EXPECT_EQ(alphaAt(10, 10), 1);
  EXPECT_EQ(alphaAt(10, 1), 1);
  EXPECT_EQ(alphaAt(1, 1), 0);
  EXPECT_EQ(alphaAt(18, 18), 0);
  // A stroked frame does not cover its inside and has round corners.
  EXPECT_EQ(alphaAt(30, 2), 1);
  EXPECT_EQ(alphaAt(22, 10), 1);
  EXPECT_EQ(alphaAt(30, 10), 0);
  EXPECT_EQ(alphaAt(20, 0), 0);
  // Twice as wide as high.
  EXPECT_EQ(alphaAt(50, 10), 1);
  EXPECT_EQ(alphaAt(42, 10), 1);
  EXPECT_EQ(alphaAt(50, 3), 0);
  EXPECT_EQ(alphaAt(40, 5), 0);
  // An arch: a cubic curve reaches three quarters of the way to its control points.
  EXPECT_EQ(alphaAt(70, 2), 1);
  EXPECT_EQ(alphaAt(70, 9), 0);
  EXPECT_EQ(alphaAt(70, 15), 0);
}

TYPED_TEST(ImagingContractTest, ABitmapHasOnePointPerPixelByDefault) {
  const auto bitmap = this->makeBitmap(128, 64);
  EXPECT_EQ(bitmap->size(), (Size{128, 64}));
  bitmap->setSize({64, 32});
  EXPECT_EQ(bitmap->size(), (Size{64, 32}));
  EXPECT_EQ(bitmap->pixelsWide(), 128);
  EXPECT_EQ(bitmap->pixelsHigh(), 64);
}

TYPED_TEST(ImagingContractTest, ReturnsNullForABitmapThatIsTooLarge) {
  EXPECT_EQ(this->implementation_.makeTooLargeBitmap(), nullptr);
}

TYPED_TEST(ImagingContractTest, AnImageKeepsItsSizeAndRepresentations) {
  const auto image = this->imaging().makeImage({18, 16});
  EXPECT_EQ(image->size(), (Size{18, 16}));
  EXPECT_TRUE(image->representations().empty());
  const auto first = this->makeBitmap(18, 16);
  const auto second = this->makeBitmap(36, 32);
  image->addRepresentation(first);
  image->addRepresentation(second);
  ASSERT_EQ(image->representations().size(), 2U);
  EXPECT_EQ(image->representations()[0], first);
  EXPECT_EQ(image->representations()[1], second);
  EXPECT_EQ(image->size(), (Size{18, 16}));
}

TYPED_TEST(ImagingContractTest, AnImageCanBeATemplate) {
  const auto image = this->imaging().makeImage({18, 18});
  EXPECT_FALSE(image->isTemplate());
  image->setTemplate(true);
  EXPECT_TRUE(image->isTemplate());
  image->setTemplate(false);
  EXPECT_FALSE(image->isTemplate());
}

TYPED_TEST(ImagingContractTest, TheMenuBarIconIsDrawnOnATransparentBackground) {
  const auto image = NavoraIcon::menuBarTemplate(this->imaging(), 18);
  EXPECT_TRUE(image->isTemplate());
  EXPECT_EQ(image->size(), (Size{18, 18}));
  ASSERT_EQ(image->representations().size(), 1U);
  const Bitmap& bitmap = *image->representations()[0];
  EXPECT_EQ(bitmap.pixelsWide(), 128);
  EXPECT_EQ(bitmap.pixelsHigh(), 128);
  EXPECT_EQ(bitmap.size(), (Size{64, 64}));
  // The middle of the left leg, of the right one, of the arch and of the tie beam.
  for (const auto& [x, y] : {std::pair(40, 80), {88, 80}, {64, 25}, {64, 54}})
    EXPECT_EQ(bitmap.colorAt(x, y), (Color{0, 0, 0, 1})) << x << ' ' << y;
  // Between the legs, above the arch, between the beams, and the corners.
  for (const auto& [x, y] :
       {std::pair(64, 100), {64, 8}, {64, 40}, {0, 0}, {127, 0}, {0, 127}, {127, 127}})
    EXPECT_EQ(bitmap.colorAt(x, y), clear) << x << ' ' << y;
}

TYPED_TEST(ImagingContractTest, TheMenuBarIconPassesItsSelfTest) {
  testing::internal::CaptureStdout();
  NavoraIcon::selfTest(this->imaging());
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "PASS: Navora menu bar icon (transparent corners, visible mark, template)\n");
}

}  // namespace
}  // namespace navora
