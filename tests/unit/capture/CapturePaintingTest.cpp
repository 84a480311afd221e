#include <gmock/gmock.h>

#include "capture/CapturePainting.h"
#include "fakes/FakeCanvas.h"

namespace navora {
namespace {

using testing::ElementsAre;

FakeCanvas painted(const CaptureSurface& surface) {
  FakeCanvas canvas;
  surface.paint(canvas, {800, 165});
  return canvas;
}

FakeCanvas painted(const CaptureSubmitButton& button) {
  FakeCanvas canvas;
  button.paint(canvas, {38, 38});
  return canvas;
}

TEST(CaptureSurface, StartsDarkAndUnfocused) {
  EXPECT_EQ(CaptureSurface().palette, CaptureAppearance::fallback(true));
  EXPECT_FALSE(CaptureSurface().focused);
}

TEST(CaptureSurface, FillsTheCardWithTheGradientAndStrokesItsBorder) {
  const CaptureSurface surface;
  const auto canvas = painted(surface);
  const Rectangle card{0.5, 0.5, 799, 164};
  const auto& palette = surface.palette;
  EXPECT_THAT(canvas.order, ElementsAre("fill rectangle", "stroke rectangle"));
  EXPECT_THAT(
      canvas.gradientFills,
      ElementsAre(FakeCanvas::GradientFill{
          card,
          23,
          {{{0, palette.surface}, {0.76, palette.surfaceEnd}, {1, palette.surfaceEnd}}, 305}}));
  EXPECT_THAT(canvas.rectangleStrokes,
              ElementsAre(FakeCanvas::RectangleStroke{card, 23, palette.border, {.lineWidth = 1}}));
}

TEST(CaptureSurface, ChangesOnlyTheBorderWithTheFocus) {
  CaptureSurface surface;
  const auto plain = painted(surface);
  surface.focused = true;
  const auto focused = painted(surface);
  EXPECT_EQ(focused.gradientFills, plain.gradientFills);
  EXPECT_EQ(focused.rectangleStrokes[0].color, surface.palette.focus);
}

TEST(CaptureSurface, PaintsSquareCornersForARadiusOfZero) {
  CaptureSurface surface;
  surface.palette.radius = 0;
  EXPECT_EQ(painted(surface).gradientFills[0].radius, 0);
}

TEST(CaptureSubmitButton, PaintsACircleWithAnArrow) {
  const CaptureSubmitButton button;
  const auto canvas = painted(button);
  const StrokeStyle pen{.lineWidth = 2.7, .roundCaps = true, .roundJoins = true};
  const Color ink = button.palette.buttonInk;
  EXPECT_THAT(canvas.order, ElementsAre("fill oval", "stroke path"));
  EXPECT_THAT(canvas.ovalFills,
              ElementsAre(FakeCanvas::OvalFill{{0, 0, 38, 38}, button.palette.button}));
  const Path arrow =
      Path().moveTo({12, 19}).lineTo({26, 19}).moveTo({20, 25}).lineTo({26, 19}).lineTo({20, 13});
  EXPECT_THAT(canvas.pathStrokes, ElementsAre(FakeCanvas::PathStroke{arrow, ink, pen}));
}

TEST(CaptureSubmitButton, ShowsTheHoverColourOnlyWhileEnabled) {
  CaptureSubmitButton button;
  const auto fill = [&] { return painted(button).ovalFills[0].color; };
  button.enabled = true;
  EXPECT_EQ(fill(), button.palette.button);
  button.hovered = true;
  EXPECT_EQ(fill(), button.palette.buttonHover);
  button.enabled = false;
  EXPECT_EQ(fill(), button.palette.button);
}

}  // namespace
}  // namespace navora
