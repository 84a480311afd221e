#include <gtest/gtest.h>

#include "app/NavoraIcon.h"
#include "hosts/linux/graphics/LinuxImaging.h"

namespace navora {
namespace {

constexpr Color pureRed{1, 0, 0, 1};

class LinuxImagingTest : public testing::Test {
 protected:
  LinuxImaging imaging_;
};

TEST_F(LinuxImagingTest, StartsTransparent) {
  const auto bitmap = imaging_.makeBitmap(3, 2);
  EXPECT_EQ(bitmap->pixelsWide(), 3);
  EXPECT_EQ(bitmap->pixelsHigh(), 2);
  for (int y = 0; y < 2; ++y) {
    for (int x = 0; x < 3; ++x)
      EXPECT_EQ(bitmap->colorAt(x, y), (Color{0, 0, 0, 0}));
  }
}

TEST_F(LinuxImagingTest, HasNoColoursOutsideItsBounds) {
  const auto bitmap = imaging_.makeBitmap(3, 2);
  EXPECT_EQ(bitmap->colorAt(-1, 0), std::nullopt);
  EXPECT_EQ(bitmap->colorAt(0, -1), std::nullopt);
  EXPECT_EQ(bitmap->colorAt(3, 0), std::nullopt);
  EXPECT_EQ(bitmap->colorAt(0, 2), std::nullopt);
}

TEST_F(LinuxImagingTest, PaintsWithYUpAndReadsWithYDown) {
  const auto bitmap = imaging_.makeBitmap(20, 10);
  bitmap->draw(2, [](Canvas& canvas) {
    canvas.fillRoundedRectangle({1, 1, 3, 1}, 0, {{{0, pureRed}, {1, pureRed}}, 0});
  });
  EXPECT_EQ(bitmap->colorAt(2, 7), pureRed);
  EXPECT_EQ(bitmap->colorAt(7, 6), pureRed);
  EXPECT_EQ(bitmap->colorAt(1, 7)->alpha, 0);
  EXPECT_EQ(bitmap->colorAt(8, 7)->alpha, 0);
  EXPECT_EQ(bitmap->colorAt(2, 8)->alpha, 0);
  EXPECT_EQ(bitmap->colorAt(2, 5)->alpha, 0);
}

TEST_F(LinuxImagingTest, ClearsWhatWasPaintedBefore) {
  const auto bitmap = imaging_.makeBitmap(4, 4);
  bitmap->draw(1, [](Canvas& canvas) {
    canvas.fillRoundedRectangle({0, 0, 4, 4}, 0, {{{0, pureRed}, {1, pureRed}}, 0});
  });
  bitmap->draw(1, [](Canvas&) {});
  EXPECT_EQ(bitmap->colorAt(2, 2)->alpha, 0);
}

TEST_F(LinuxImagingTest, ReturnsThePaintedColours) {
  const Color wanted{1, 0.5, 0.25, 0.5};
  const auto bitmap = imaging_.makeBitmap(4, 4);
  bitmap->draw(1, [&](Canvas& canvas) {
    canvas.fillRoundedRectangle({0, 0, 4, 4}, 0, {{{0, wanted}, {1, wanted}}, 0});
  });
  const auto read = bitmap->colorAt(1, 1);
  ASSERT_TRUE(read);
  EXPECT_NEAR(read->red, wanted.red, 0.01);
  EXPECT_NEAR(read->green, wanted.green, 0.01);
  EXPECT_NEAR(read->blue, wanted.blue, 0.01);
  EXPECT_NEAR(read->alpha, wanted.alpha, 0.01);
}

TEST_F(LinuxImagingTest, HasOnePointPerPixelByDefault) {
  const auto bitmap = imaging_.makeBitmap(128, 64);
  EXPECT_EQ(bitmap->size(), (Size{128, 64}));
  bitmap->setSize({64, 32});
  EXPECT_EQ(bitmap->size(), (Size{64, 32}));
  EXPECT_EQ(bitmap->pixelsWide(), 128);
}

TEST_F(LinuxImagingTest, ReturnsNullForImpossibleSizes) {
  EXPECT_EQ(imaging_.makeBitmap(1'000'000, 1'000'000), nullptr);
  EXPECT_EQ(imaging_.makeBitmap(-1, 5), nullptr);
}

TEST_F(LinuxImagingTest, KeepsTheRepresentationsOfAnImage) {
  const auto image = imaging_.makeImage({18, 16});
  EXPECT_EQ(image->size(), (Size{18, 16}));
  EXPECT_FALSE(image->isTemplate());
  EXPECT_TRUE(image->representations().empty());
  const auto bitmap = imaging_.makeBitmap(36, 32);
  image->addRepresentation(bitmap);
  image->setTemplate(true);
  EXPECT_TRUE(image->isTemplate());
  ASSERT_EQ(image->representations().size(), 1U);
  EXPECT_EQ(image->representations()[0], bitmap);
}

TEST_F(LinuxImagingTest, DrawsAMenuBarIconThatPassesItsSelfTest) {
  testing::internal::CaptureStdout();
  NavoraIcon::selfTest(imaging_);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "PASS: Navora menu bar icon (transparent corners, visible mark, template)\n");
}

TEST_F(LinuxImagingTest, DrawsTheGateOfTheMenuBarIcon) {
  const auto bitmap = NavoraIcon::render(imaging_, 2);
  // The middle of the left leg, of the arch and of the tie beam; nothing between the legs.
  EXPECT_EQ(bitmap->colorAt(40, 80), (Color{0, 0, 0, 1}));
  EXPECT_EQ(bitmap->colorAt(64, 25), (Color{0, 0, 0, 1}));
  EXPECT_EQ(bitmap->colorAt(64, 54), (Color{0, 0, 0, 1}));
  EXPECT_EQ(bitmap->colorAt(64, 100)->alpha, 0);
}

}  // namespace
}  // namespace navora
