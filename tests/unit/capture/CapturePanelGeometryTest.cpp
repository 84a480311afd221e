#include <gtest/gtest.h>

#include "capture/CapturePanelGeometry.h"

namespace navora {
namespace {

const Screen left{{0, 0, 1000, 800}, {0, 0, 1000, 775}};
const Screen right{{1000, 100, 1440, 900}, {1000, 160, 1440, 840}};

std::optional<Screen> screenUnder(Point mouse) {
  return CapturePanelGeometry::screen({left, right}, left, mouse);
}

TEST(CapturePanelGeometryScreen, ContainsThePointer) {
  EXPECT_EQ(screenUnder({10, 10}), left);
  EXPECT_EQ(screenUnder({999.5, 790}), left);
  EXPECT_EQ(screenUnder({1000, 100}), right);
  EXPECT_EQ(screenUnder({2000, 120}), right);
}

TEST(CapturePanelGeometryScreen, IsTheMainScreenIfThePointerIsOnNone) {
  EXPECT_EQ(screenUnder({1500, 50}), left);
  EXPECT_EQ(CapturePanelGeometry::screen({left}, right, {-5, -5}), right);
  EXPECT_EQ(CapturePanelGeometry::screen({}, std::nullopt, {0, 0}), std::nullopt);
}

TEST(CapturePanelGeometryOpeningFrame, IsCentredAboveTheMiddleOfTheScreen) {
  EXPECT_EQ(CapturePanelGeometry::openingFrame({0, 0, 1000, 1000}),
            (Rectangle{100, 680 - 165, 800, 165}));
  EXPECT_EQ(CapturePanelGeometry::openingFrame({1000, 200, 2000, 500}),
            (Rectangle{1600, 200 + 340 - 165, 800, 165}));
}

TEST(CapturePanelGeometryOpeningFrame, KeepsAMarginOnNarrowScreens) {
  EXPECT_EQ(CapturePanelGeometry::openingFrame({0, 0, 700, 1000}), (Rectangle{20, 515, 660, 165}));
  EXPECT_EQ(CapturePanelGeometry::openingFrame({0, 0, 840, 1000}).width, 800);
}

TEST(CapturePanelGeometryEditorHeight, GrowsFromItsMinimumToItsLimit) {
  EXPECT_EQ(CapturePanelGeometry::editorHeight(24.65, 17, 360), 58);
  EXPECT_EQ(CapturePanelGeometry::editorHeight(48, 17, 360), 58);
  EXPECT_EQ(CapturePanelGeometry::editorHeight(48.1, 17, 360), 59);
  EXPECT_EQ(CapturePanelGeometry::editorHeight(350, 17, 360), 360);
  EXPECT_EQ(CapturePanelGeometry::editorHeight(351, 17, 360), 360);
  EXPECT_EQ(CapturePanelGeometry::editorHeight(1e9, 17, 360), 360);
  EXPECT_EQ(CapturePanelGeometry::editorHeight(0, 32, 360), 109);
  EXPECT_EQ(CapturePanelGeometry::editorHeight(24, 17, 40), 40);
}

TEST(CapturePanelGeometryEditorHeight, IsLimitedByTheScreenIfThePanelIsOnOne) {
  EXPECT_EQ(CapturePanelGeometry::largestEditorHeight(Rectangle{0, 0, 1440, 900}), 360);
  EXPECT_EQ(CapturePanelGeometry::largestEditorHeight(std::nullopt), 280);
}

TEST(CapturePanelGeometryMessage, WrapsBesideTheButtonAndHasBounds) {
  EXPECT_EQ(CapturePanelGeometry::messageWidth(800, 24), 691);
  EXPECT_EQ(CapturePanelGeometry::messageWidth(200, 24), 160);
  EXPECT_EQ(CapturePanelGeometry::messageHeight(3), 14);
  EXPECT_EQ(CapturePanelGeometry::messageHeight(28.2), 29);
  EXPECT_EQ(CapturePanelGeometry::messageHeight(1000), 100);
}

TEST(CapturePanelGeometryPanelHeight, GrowsWithTheMessageOnlyBeyondTheButton) {
  EXPECT_EQ(CapturePanelGeometry::panelHeight(58, 14, 24), 165);
  EXPECT_EQ(CapturePanelGeometry::panelHeight(58, 38, 24), 165);
  EXPECT_EQ(CapturePanelGeometry::panelHeight(58, 42, 24), 169);
  EXPECT_EQ(CapturePanelGeometry::panelHeight(100, 14, 16), 191);
}

TEST(CapturePanelGeometryWithHeight, KeepsTheTopEdge) {
  EXPECT_EQ(CapturePanelGeometry::withHeight({10, 100, 800, 165}, 200),
            (Rectangle{10, 65, 800, 200}));
  EXPECT_EQ(CapturePanelGeometry::withHeight({10, 100, 800, 165}, 100),
            (Rectangle{10, 165, 800, 100}));
}

}  // namespace
}  // namespace navora
