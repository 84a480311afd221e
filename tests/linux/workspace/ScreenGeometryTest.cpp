#include <gtest/gtest.h>

#include "hosts/linux/workspace/ScreenGeometry.h"
#include "linux/support/TestDesktop.h"

namespace navora {
namespace {

// The test's desktop has one screen, at GDK's origin.
class ScreenGeometryTest : public testing::Test {
 protected:
  const int height_ = TestDesktop::current().display().connection().screen().height_in_pixels;
  const ScreenGeometry geometry_;
};

TEST_F(ScreenGeometryTest, HasItsOriginInTheLowerLeftCorner) {
  EXPECT_EQ(geometry_.toCore(GdkRectangle{10, 20, 300, 100}),
            (Rectangle{10, height_ - 120.0, 300, 100}));
  EXPECT_EQ(geometry_.toCore(10, height_ - 30), (Point{10, 30}));
}

TEST_F(ScreenGeometryTest, ConvertsBackAndForth) {
  const GdkRectangle rectangle{10, 20, 300, 100};
  const GdkRectangle back = geometry_.toGdk(geometry_.toCore(rectangle));
  EXPECT_NE(gdk_rectangle_equal(&rectangle, &back), FALSE);
}

TEST_F(ScreenGeometryTest, KeepsTheUpperEdgeWhateverTheHeight) {
  const double top = 500;
  for (const double height : {165.0, 165.3, 165.5, 189.65, 214.3}) {
    const GdkRectangle rectangle = geometry_.toGdk({0.4, top - height, 800, height});
    EXPECT_EQ(rectangle.y, height_ - 500) << height;
    EXPECT_EQ(rectangle.x, 0);
    EXPECT_NEAR(rectangle.height, height, 0.5);
  }
}

}  // namespace
}  // namespace navora
