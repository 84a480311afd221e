#include "pages/AppearanceRules.h"
#include "pages/PageTest.h"

namespace navora::driver {
namespace {

using testing::IsEmpty;

// The appearance script on the today view of the service.
class CaptureAppearanceTest : public PageTest {
 protected:
  void openEditor() {
    openToday();
    listen();
  }

  void setTheme(const std::string& theme) {
    page().evaluate("document.documentElement.dataset.theme = '" + theme + "'");
  }

  static Json light() {
    return {{"dark", false},
            {"surface", "#ffffff"},
            {"surfaceEnd", "#ffffff"},
            {"border", "#ebebeb"},
            {"focus", "#d9d9d9"},
            {"ink", "#252525"},
            {"caret", "#252525"},
            {"button", "#ff3c64"},
            {"placeholderColor", "#c2c2c2"},
            {"muted", "#767676"},
            {"buttonHover", "#ff3c64"},
            {"buttonInk", "#ffffff"},
            {"radius", 18},
            {"padding", 16},
            {"fontSize", 17},
            {"lineHeight", 24.65},
            {"font", "sans"},
            {"theme", "light"},
            {"placeholder", "What is on your mind?"}};
  }

  static Json dark() {
    return {{"dark", true},
            {"surface", "#292725"},
            {"surfaceEnd", "#242322"},
            {"border", "#49403b"},
            {"focus", "#ab7873"},
            {"ink", "#ede6df"},
            {"caret", "#f2a99c"},
            {"button", "#e94a69"},
            {"placeholderColor", "#b2a69e"},
            {"muted", "#a49991"},
            {"buttonHover", "#f05b77"},
            {"buttonInk", "#20201e"},
            {"radius", 23},
            {"padding", 24},
            {"fontSize", 17},
            {"lineHeight", 24.65},
            {"font", "sans"},
            {"theme", "dark"},
            {"placeholder", "What is on your mind?"}};
  }

  static Json withTheme(Json appearance, const std::string& theme) {
    appearance["theme"] = theme;
    return appearance;
  }
};

TEST_F(CaptureAppearanceTest, ReportsTheAppearanceOfEachThemeOnce) {
  openEditor();
  setTheme("light");
  runScript();
  EXPECT_EQ(posted(1)[0], light());
  setTheme("dark");
  EXPECT_EQ(posted(2)[1], dark());
  setTheme("system");
  EXPECT_EQ(posted(3)[2], withTheme(light(), "system"));
  const auto all = settled();
  EXPECT_EQ(all.size(), 3U);
  for (const Json& appearance : all)
    EXPECT_THAT(appearanceProblems(appearance), IsEmpty());
}

TEST_F(CaptureAppearanceTest, FollowsTheDesktopInTheSystemTheme) {
  openEditor();
  runScript();
  EXPECT_EQ(posted(1)[0], withTheme(light(), "system"));
  switchColorScheme();
  EXPECT_EQ(posted(2)[1], withTheme(dark(), "system"));
  setTheme("light");
  EXPECT_EQ(posted(3)[2], light());
  switchColorScheme();
  switchColorScheme();
  EXPECT_EQ(settled().size(), 3U);
}

TEST_F(CaptureAppearanceTest, FollowsTheThemeThatIsChosenWhileTheEditorIsHidden) {
  openEditor();
  runScript();
  posted(1);
  page().click("[data-nav=settings]");
  page().waitUntilTrue("document.querySelector('[data-view=today]').hidden");
  page().evaluate(
      "const theme = document.querySelector('#setting-theme'); theme.value = 'dark';"
      "theme.dispatchEvent(new Event('change'))");
  EXPECT_EQ(posted(2)[1], dark());
}

TEST_F(CaptureAppearanceTest, IsNotChangedByFocusTextOrPointer) {
  openEditor();
  setTheme("dark");
  runScript();
  posted(1);
  page().type("#capture-input", "Some text");
  page().rectangle("#capture-submit");
  desktop().mouse().moveTo(page().rectangle("#capture-submit").center());
  page().waitUntilTrue("document.querySelector('#capture-submit').matches(':hover:enabled')");
  EXPECT_EQ(settled().size(), 1U);
  const Json after = posted(2)[1];
  const Json expected = dark();
  for (const auto& [key, value] : expected.items()) {
    if (key == "placeholder") continue;
    EXPECT_EQ(after[key], value) << key;
  }
}

TEST_F(CaptureAppearanceTest, ReportsEachAppearanceOnce) {
  openEditor();
  runScript();
  posted(1);
  runScript();
  page().evaluate(
      "document.body.className = 'other'; document.documentElement.dataset.more = '1';"
      "window.dispatchEvent(new Event('resize')); window.dispatchEvent(new Event('focus'))");
  EXPECT_EQ(settled().size(), 1U);
}

TEST_F(CaptureAppearanceTest, LeavesNothingInThePage) {
  openEditor();
  const std::string traces =
      "return [Object.getOwnPropertyNames(window).sort(), "
      "Object.getOwnPropertySymbols(window).length, document.documentElement.outerHTML]";
  const Json before = page().evaluate(traces);
  runScript();
  posted(1);
  EXPECT_EQ(page().evaluate(traces), before);
  EXPECT_EQ(page().evaluate("return failures"), Json::array());
}

TEST_F(CaptureAppearanceTest, ReportsNothingOnTheLoginPage) {
  open("/login");
  listen();
  runScript();
  // The later message shows that the script works and sent none before.
  page().evaluate(
      "const card = document.createElement('div'); card.className = 'capture-editor';"
      "card.innerHTML = '<div id=capture-input contenteditable></div>"
      "<button id=capture-submit></button>'; document.body.append(card)");
  EXPECT_THAT(appearanceProblems(posted(1)[0]), IsEmpty());
  EXPECT_EQ(settled().size(), 1U);
}

}  // namespace
}  // namespace navora::driver
