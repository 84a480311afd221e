#include <gtest/gtest.h>

#include "end_to_end/CaptureTest.h"

namespace navora::driver {
namespace {

// The surface and text colours of both themes in the service's style sheet.
constexpr PixelColor lightSurface{255, 255, 255};
constexpr PixelColor lightInk{0x25, 0x25, 0x25};
constexpr PixelColor darkSurface{0x29, 0x27, 0x25};
constexpr PixelColor darkInk{0xED, 0xE6, 0xDF};

// The desktop theme is light.
class CaptureThemeTest : public CaptureTest {
 protected:
  // Chooses a theme as the menu on the settings page does.
  void chooseTheme(const std::string& theme) {
    page().evaluate(
        "const menu = document.querySelector('#setting-theme');\n"
        "menu.value = '" +
        theme + "';\nmenu.dispatchEvent(new Event('change', {bubbles: true}))");
    page().waitUntilTrue("document.documentElement.dataset.theme === '" + theme + "'",
                         "the page has the theme " + theme);
  }

  Screenshot panelPicture() {
    const auto shown = panel();
    if (!shown) throw TestError("The capture panel is not on the screen");
    return desktop().display().screenshot(shown->content);
  }

  void waitForSurface(PixelColor surface) {
    waitUntil(
        [&] {
          const Screenshot picture = panelPicture();
          const auto pixels = static_cast<std::size_t>(picture.width() * picture.height());
          return picture.pixelsLike(surface) > pixels * 3 / 4;
        },
        "the panel's surface has the theme's colour");
  }

  void waitForInk(PixelColor ink) {
    waitUntil([&] { return panelPicture().pixelsLike(ink) > 50; },
              "the panel's text has the theme's colour");
  }
};

TEST_F(CaptureThemeTest, OpensThePanelInTheThemeChosenInTheSettings) {
  chooseTheme("dark");
  openPanel();
  waitForSurface(darkSurface);
  desktop().keyboard().chord("Escape");
  waitUntilPanelHidden();
  chooseTheme("light");
  openPanel();
  waitForSurface(lightSurface);
}

TEST_F(CaptureThemeTest, FollowsTheThemeWhileTextIsBeingWritten) {
  openPanel();
  typeDraft("Written by day and by night");
  waitForSurface(lightSurface);
  waitForInk(lightInk);
  chooseTheme("dark");
  waitForSurface(darkSurface);
  waitForInk(darkInk);
  chooseTheme("light");
  waitForSurface(lightSurface);
  waitForInk(lightInk);
  EXPECT_EQ(draft(), "Written by day and by night");
}

TEST_F(CaptureThemeTest, KeepsTheThemeForTheNextStart) {
  chooseTheme("dark");
  openPanel();
  waitForSurface(darkSurface);
  // Without the service no page reports its appearance.
  service().stop();
  application().restart();
  application().waitForMainWindow();
  openPanel();
  waitForSurface(darkSurface);
}

}  // namespace
}  // namespace navora::driver
