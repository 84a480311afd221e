#include <gtest/gtest.h>

#include "fakes/FakeCanvas.h"
#include "unit/capture/AppearanceDictionary.h"
#include "unit/capture/QuickCaptureTest.h"

namespace navora {
namespace {

constexpr const char* appearanceKey = "NavoraCaptureAppearance";

class DesktopQuickCaptureAppearanceTest : public QuickCaptureTest {
 protected:
  void expectLook(const CaptureAppearance& look) {
    EXPECT_EQ(panel().appearance(), look.windowAppearance());
    EXPECT_EQ(editor().style(), look.editorStyle());
    EXPECT_EQ(panel().messageColor(), look.muted);
    EXPECT_EQ(panel().layout().padding, look.padding);
    FakeCanvas canvas;
    panel().delegate().paintSurface(canvas, {800, 165});
    panel().delegate().paintSubmitButton(canvas, {38, 38});
    EXPECT_EQ(canvas.gradientFills[0].gradient.stops[0].color, look.surface);
    EXPECT_EQ(canvas.gradientFills[0].radius, look.radius);
    EXPECT_EQ(canvas.ovalFills[0].color, look.button);
  }
};

TEST_F(DesktopQuickCaptureAppearanceTest, StartsWithTheFallbackForTheSystemsMode) {
  make();
  expectLook(CaptureAppearance::fallback(false));
  capture.reset();
  platform.captureDesktop().dark = true;
  make();
  expectLook(CaptureAppearance::fallback(true));
}

TEST_F(DesktopQuickCaptureAppearanceTest, AdoptsAndStoresThePagesAppearance) {
  make();
  capture->syncAppearance(appearanceDictionary());
  expectLook(*CaptureAppearance::read(appearanceDictionary()));
  EXPECT_EQ(editor().placeholder(), "Write");
  EXPECT_EQ(platform.userDefaults().value(appearanceKey), appearanceDictionary());
  capture.reset();
  make();
  expectLook(*CaptureAppearance::read(appearanceDictionary()));
}

TEST_F(DesktopQuickCaptureAppearanceTest, IgnoresAnInvalidAppearance) {
  make();
  capture->syncAppearance(appearanceDictionary());
  Json wrong = appearanceDictionary();
  wrong["radius"] = 49;
  wrong["surface"] = "#ffffff";
  for (const Json& body : {wrong, Json(), Json::array(), Json("dark"), Json::object()})
    capture->syncAppearance(body);
  expectLook(*CaptureAppearance::read(appearanceDictionary()));
  EXPECT_EQ(platform.userDefaults().value(appearanceKey), appearanceDictionary());
}

TEST_F(DesktopQuickCaptureAppearanceTest, IgnoresAnInvalidStoredAppearance) {
  platform.userDefaults().setValue(appearanceKey, Json{{"dark", true}});
  make();
  expectLook(CaptureAppearance::fallback(false));
}

TEST_F(DesktopQuickCaptureAppearanceTest, FollowsTheSystemUntilThePageReportsAgain) {
  make();
  capture->syncAppearance(appearanceDictionary());
  panel().delegate().systemAppearanceDidChange(true);
  expectLook(CaptureAppearance::read(appearanceDictionary())->followingSystemAppearance(true));
  EXPECT_EQ(platform.userDefaults().value(appearanceKey), appearanceDictionary());
}

TEST_F(DesktopQuickCaptureAppearanceTest, AdaptsAStoredAppearanceToTheSystemsMode) {
  platform.userDefaults().setValue(appearanceKey, appearanceDictionary());
  platform.captureDesktop().dark = true;
  make();
  expectLook(CaptureAppearance::read(appearanceDictionary())->followingSystemAppearance(true));
}

TEST_F(DesktopQuickCaptureAppearanceTest, LaysOutThePanelForANewAppearance) {
  open();
  const double top = panel().frame().maxY();
  capture->syncAppearance(appearanceDictionary());
  // The editor is 3.4 font sizes of 14 points high, the padding 13.5 points.
  EXPECT_EQ(panel().frame().height, 48 + 27 + 21 + 38);
  EXPECT_EQ(panel().frame().maxY(), top);
}

TEST_F(DesktopQuickCaptureAppearanceTest, ShowsItsOwnTranslatedPlaceholderIfThePageHasNone) {
  make();
  Json plain = appearanceDictionary();
  plain["placeholder"] = "";
  capture->syncAppearance(plain);
  EXPECT_EQ(editor().placeholder(), "Какая мысль зацепила?");
}

}  // namespace
}  // namespace navora
