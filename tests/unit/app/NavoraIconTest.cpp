#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/NavoraIcon.h"
#include "fakes/FakeImaging.h"

namespace navora {
namespace {

using testing::ElementsAre;

constexpr const char* failed =
    "Fatal error: Navora menu bar icon failed its transparency/template self-test "
    "\\(NavoraIcon:27\\)";

TEST(NavoraIcon, IsAGateStrokedAsOnePath) {
  FakeCanvas canvas;
  NavoraIcon::paint(canvas);
  const Path gate = Path()
                        .moveTo({8, 47})
                        .curveTo({56, 47}, {25, 53}, {39, 53})
                        .moveTo({14, 37})
                        .lineTo({50, 37})
                        .moveTo({19, 42})
                        .lineTo({21, 10})
                        .moveTo({45, 42})
                        .lineTo({43, 10});
  const StrokeStyle pen{.lineWidth = 6, .roundCaps = true, .roundJoins = true};
  EXPECT_THAT(canvas.order, ElementsAre("stroke path"));
  EXPECT_THAT(canvas.pathStrokes,
              ElementsAre(FakeCanvas::PathStroke{gate, Color{0, 0, 0, 1}, pen}));
}

TEST(NavoraIcon, RendersTwoPixelsPerUnit) {
  FakeImaging imaging;
  const auto bitmap = std::dynamic_pointer_cast<FakeBitmap>(NavoraIcon::render(imaging, 2));
  EXPECT_EQ(bitmap->pixelsWide(), 128);
  EXPECT_EQ(bitmap->pixelsHigh(), 128);
  EXPECT_EQ(bitmap->scale, 2);
  EXPECT_EQ(bitmap->canvas.pathStrokes.size(), 1U);
}

TEST(NavoraIcon, IsATemplateWithOneBitmapAtDoubleResolution) {
  FakeImaging imaging;
  const auto image = NavoraIcon::menuBarTemplate(imaging, 18);
  EXPECT_TRUE(image->isTemplate());
  EXPECT_EQ(image->size(), (Size{18, 18}));
  ASSERT_EQ(image->representations().size(), 1U);
  EXPECT_EQ(image->representations()[0]->size(), (Size{64, 64}));
  EXPECT_EQ(image->representations()[0]->pixelsWide(), 128);
}

TEST(NavoraIcon, PassesItsSelfTestWithOneLine) {
  FakeImaging imaging;
  testing::internal::CaptureStdout();
  NavoraIcon::selfTest(imaging);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "PASS: Navora menu bar icon (transparent corners, visible mark, template)\n");
}

using NavoraIconDeathTest = testing::Test;

TEST(NavoraIconDeathTest, FailsForAnOpaqueCorner) {
  using Corner = std::pair<int, int>;
  for (const Corner& corner : {Corner{0, 0}, {127, 0}, {0, 127}, {127, 127}}) {
    FakeImaging imaging;
    imaging.pixel = [&](int x, int y) -> std::optional<Color> {
      const bool edge = x % 127 == 0 && y % 127 == 0;
      const double alpha = Corner{x, y} == corner ? 0.01 : edge ? 0 : 1;
      return Color{0, 0, 0, alpha};
    };
    EXPECT_DEATH(NavoraIcon::selfTest(imaging), failed) << corner.first << ' ' << corner.second;
  }
}

TEST(NavoraIconDeathTest, FailsForAnUnreadableCorner) {
  FakeImaging imaging;
  imaging.pixel = [](int x, int) -> std::optional<Color> {
    if (x == 127) return std::nullopt;
    return Color{0, 0, 0, x == 0 ? 0.0 : 1.0};
  };
  EXPECT_DEATH(NavoraIcon::selfTest(imaging), failed);
}

TEST(NavoraIconDeathTest, FailsWithoutAVisibleMark) {
  FakeImaging imaging;
  imaging.pixel = [](int x, int y) -> std::optional<Color> {
    // Opaque except in the corners and at the checked pixels.
    const bool looked = x % 4 == 0 && y % 4 == 0 && x <= 116 && y <= 116;
    const bool corner = x % 127 == 0 && y % 127 == 0;
    return Color{0, 0, 0, looked ? 0.5 : corner ? 0 : 1};
  };
  EXPECT_DEATH(NavoraIcon::selfTest(imaging), failed);
}

TEST(NavoraIconDeathTest, FailsIfTheImageIsNotATemplate) {
  FakeImaging imaging;
  imaging.keepsTemplateFlag = false;
  EXPECT_DEATH(NavoraIcon::selfTest(imaging), failed);
}

TEST(NavoraIconDeathTest, FailsWithoutMemory) {
  FakeImaging imaging;
  imaging.hasMemory = false;
  EXPECT_DEATH(NavoraIcon::render(imaging, 2),
               "Fatal error: Could not create Navora menu bar image \\(NavoraIcon:39\\)");
}

}  // namespace
}  // namespace navora
