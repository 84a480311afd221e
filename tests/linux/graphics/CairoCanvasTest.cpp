#include <algorithm>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "capture/CapturePainting.h"
#include "hosts/linux/graphics/CairoCanvas.h"

namespace navora {
namespace {

constexpr Color red{1, 0, 0, 1};
constexpr Color blue{0, 0, 1, 1};

// Paints on a white image of 100 by 60 pixels.
class CairoCanvasTest : public testing::Test {
 protected:
  CairoCanvasTest() {
    cairo_set_source_rgb(context_.get(), 1, 1, 1);
    cairo_paint(context_.get());
    canvas_ = std::make_unique<CairoCanvas>(context_.get(), Size{100, 60});
  }

  // Image coordinates: y points down.
  Color at(int x, int y) {
    cairo_surface_flush(image_.get());
    const auto* row = cairo_image_surface_get_data(image_.get()) +
                      y * cairo_image_surface_get_stride(image_.get());
    const std::uint32_t pixel = reinterpret_cast<const std::uint32_t*>(row)[x];
    const auto channel = [&](int shift) { return ((pixel >> shift) & 0xFF) / 255.0; };
    return {channel(16), channel(8), channel(0), channel(24)};
  }
  static bool isWhite(const Color& color) { return color == Color{1, 1, 1, 1}; }

  std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> image_{
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 100, 60), cairo_surface_destroy};
  std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context_{cairo_create(image_.get()),
                                                              cairo_destroy};
  std::unique_ptr<CairoCanvas> canvas_;
};

TEST_F(CairoCanvasTest, HasItsYAxisPointingUp) {
  canvas_->fillRoundedRectangle({0, 0, 100, 30}, 0, {{{0, red}, {1, red}}, 0});
  EXPECT_TRUE(isWhite(at(50, 10)));
  EXPECT_EQ(at(50, 50), red);
}

TEST_F(CairoCanvasTest, LimitsTheCornerRadiusToHalfASide) {
  canvas_->fillRoundedRectangle({0, 0, 100, 60}, 20, {{{0, red}, {1, red}}, 0});
  EXPECT_TRUE(isWhite(at(1, 1)));
  EXPECT_TRUE(isWhite(at(98, 58)));
  EXPECT_EQ(at(20, 0), red);
  canvas_->fillRoundedRectangle({0, 0, 100, 60}, 1000, {{{0, blue}, {1, blue}}, 0});
  EXPECT_EQ(at(50, 1), blue);
  EXPECT_EQ(at(1, 30), blue);
}

TEST_F(CairoCanvasTest, PaintsGradientsAlongTheirAngle) {
  const LinearGradient toTheRight{{{0, red}, {1, blue}}, 0};
  canvas_->fillRoundedRectangle({0, 0, 100, 60}, 0, toTheRight);
  EXPECT_GT(at(2, 30).red, 0.9);
  EXPECT_GT(at(97, 30).blue, 0.9);
  EXPECT_NEAR(at(50, 5).red, 0.5, 0.05);
  canvas_->fillRoundedRectangle({0, 0, 100, 60}, 0, {{{0, red}, {1, blue}}, 90});
  EXPECT_GT(at(50, 58).red, 0.9);
  EXPECT_GT(at(50, 1).blue, 0.9);
}

TEST_F(CairoCanvasTest, GradientsReachTheirEndColoursInTheCorners) {
  // From the upper left to the lower right corner.
  canvas_->fillRoundedRectangle({0, 0, 100, 60}, 0, {{{0, red}, {0.76, blue}, {1, blue}}, 305});
  EXPECT_GT(at(0, 0).red, 0.95);
  EXPECT_GT(at(99, 59).blue, 0.99);
  EXPECT_GT(at(80, 50).blue, 0.99);
  EXPECT_GT(at(0, 20).red, at(0, 40).red);
}

TEST_F(CairoCanvasTest, CentresStrokesOnThePath) {
  canvas_->strokeRoundedRectangle({0.5, 0.5, 99, 59}, 10, red, {.lineWidth = 1});
  EXPECT_EQ(at(50, 0), red);
  EXPECT_EQ(at(50, 59), red);
  EXPECT_TRUE(isWhite(at(50, 1)));
  EXPECT_TRUE(isWhite(at(0, 0)));
}

TEST_F(CairoCanvasTest, FillsOvals) {
  canvas_->fillOval({20, 10, 60, 40}, red);
  EXPECT_EQ(at(50, 30), red);
  EXPECT_EQ(at(22, 30), red);
  EXPECT_TRUE(isWhite(at(22, 12)));
}

TEST_F(CairoCanvasTest, StrokesLinesWithRoundOrFlatEnds) {
  canvas_->strokePath(Path().moveTo({20, 30}).lineTo({80, 30}), red,
                      {.lineWidth = 10, .roundCaps = true});
  EXPECT_EQ(at(17, 30), red);
  EXPECT_TRUE(isWhite(at(15, 25)));
  canvas_->strokePath(Path().moveTo({20, 10}).lineTo({80, 10}), blue, {.lineWidth = 10});
  EXPECT_TRUE(isWhite(at(17, 50)));
  EXPECT_EQ(at(21, 50), blue);
}

TEST_F(CairoCanvasTest, StrokesCurvesTowardsTheirControlPoints) {
  canvas_->strokePath(Path().moveTo({10, 10}).curveTo({90, 10}, {10, 50}, {90, 50}), red,
                      {.lineWidth = 6});
  EXPECT_EQ(at(50, 20), red);
  EXPECT_TRUE(isWhite(at(50, 50)));
}

TEST_F(CairoCanvasTest, StrokesAllSubpathsInOneOperation) {
  const Color translucent{0, 0, 0, 0.5};
  canvas_->strokePath(Path().moveTo({20, 30}).lineTo({80, 30}).moveTo({50, 10}).lineTo({50, 50}),
                      translucent, {.lineWidth = 10});
  EXPECT_NEAR(at(50, 30).red, 0.5, 0.01);
  EXPECT_NEAR(at(50, 12).red, 0.5, 0.01);
  EXPECT_TRUE(isWhite(at(25, 12)));
}

TEST_F(CairoCanvasTest, PaintsTheTranslucentArrowOfTheButtonEvenly) {
  CaptureSubmitButton button;
  button.palette.button = {1, 1, 1, 1};
  button.palette.buttonInk = {0, 0, 0, 0.5};
  button.paint(*canvas_, {100, 60});
  double darkest = 1;
  for (int x = 0; x < 100; ++x) {
    for (int y = 0; y < 60; ++y)
      darkest = std::min(darkest, at(x, y).red);
  }
  EXPECT_NEAR(darkest, 0.5, 0.01);
}

TEST_F(CairoCanvasTest, BlendsTranslucentColours) {
  canvas_->fillOval({0, 0, 100, 60}, {0, 0, 0, 0.5});
  EXPECT_NEAR(at(50, 30).red, 0.5, 0.01);
}

TEST_F(CairoCanvasTest, RestoresTheContext) {
  canvas_.reset();
  cairo_matrix_t matrix;
  cairo_get_matrix(context_.get(), &matrix);
  EXPECT_EQ(matrix.yy, 1);
}

}  // namespace
}  // namespace navora
