#include <string>

#include <gtest/gtest.h>

#include "end_to_end/CaptureTest.h"
#include "end_to_end/TestPageTest.h"
#include "end_to_end/driver/Mouse.h"

namespace navora::driver {
namespace {

class MainWindowTest : public TestPageTest {};

TEST_F(MainWindowTest, StartsCentredInItsOwnSizeWithTheServicesLoginPage) {
  const auto window = application().waitForMainWindow();
  EXPECT_EQ(window.title, "Navora");
  EXPECT_EQ(page().evaluate("return [innerWidth, innerHeight]"), (Json{1240, 820}));
  EXPECT_EQ(window.content.width, 1240);
  // The menu bar comes on top.
  EXPECT_GT(window.content.height, 820);
  EXPECT_NEAR(window.content.center().x, 800, 20);
  EXPECT_NEAR(window.content.center().y, 500, 30);
  EXPECT_EQ(page().path(), "/login");
}

TEST_F(MainWindowTest, HasItsIconWithoutBeingInstalled) {
  const auto window = application().waitForMainWindow();
  // EWMH _NET_WM_ICON: width, height and the pixels as 0xAARRGGBB, for each size.
  const auto icon = desktop().display().connection().numbersProperty(window.id, "_NET_WM_ICON");
  ASSERT_GT(icon.size(), 2U);
  // Above the mark, where the tile is red.
  const std::size_t pixel = 2 + icon[0] * (icon[1] * 15 / 100) + icon[0] / 2;
  ASSERT_LT(pixel, icon.size());
  EXPECT_EQ(icon[pixel] >> 24U, 255U);
  EXPECT_GT((icon[pixel] >> 16U) & 0xFFU, 200U);
  EXPECT_LT((icon[pixel] >> 8U) & 0xFFU, 100U);
}

TEST_F(MainWindowTest, IsHiddenByCloseAndShownByASecondLaunch) {
  signIn();
  page().evaluate("window.kept = 'the same page'");
  desktop().display().close(application().waitForMainWindow().id);
  application().waitUntilMainWindowHidden();
  EXPECT_TRUE(application().running());

  const auto outcome = application().run({});
  EXPECT_EQ(outcome.status.code, 0);
  const auto window = application().waitForMainWindow();
  desktop().display().waitUntilActive(window.id);
  EXPECT_EQ(page().evaluate("return window.kept"), "the same page");
}

TEST_F(MainWindowTest, RepaintsThePageWhereAMenuHasCoveredIt) {
  signIn();
  const auto content = application().waitForMainWindow().content;
  const Rectangle covered{content.x, content.y + 40, 200, 120};
  const auto shown = [&] { return desktop().display().screenshot(covered); };
  const auto looksLike = [&](const Screenshot& other) {
    return shown().differingPixels(other) < 20;
  };
  waitUntil([&] { return !shown().blank(); }, "the page is drawn");
  const Screenshot before = shown();
  desktop().mouse().click({content.x + 30, content.y + 14});
  widget("menu item", "About Navora");
  waitUntil([&] { return !looksLike(before); }, "the menu is drawn");
  desktop().keyboard().chord("Escape");
  desktop().mouse().moveTo({content.x + content.width / 2, content.y + content.height - 20});
  waitUntil([&] { return looksLike(before); }, "the page is there again");
}

TEST_F(MainWindowTest, IsRestoredFromMinimisedByASecondLaunch) {
  const auto window = application().waitForMainWindow();
  desktop().display().minimise(window.id);
  waitUntil([&] { return desktop().display().window(window.id)->minimised; },
            "the window is minimised");
  application().run({});
  desktop().display().waitUntilActive(window.id);
}

TEST_F(MainWindowTest, KeepsItsSizeAndStaysSignedInAcrossLaunchesButStartsCentred) {
  signIn();
  const auto window = application().waitForMainWindow();
  desktop().display().resize(window.id, 900, 640);
  waitUntil([&] { return application().waitForMainWindow().content.width == 900; },
            "the window is resized");
  page().waitUntilTrue("innerWidth === 900", "the application knows its new size");
  application().restart();
  const auto next = application().waitForMainWindow();
  EXPECT_EQ(next.content.width, 900);
  EXPECT_EQ(next.content.height, 640);
  EXPECT_NEAR(next.content.center().x, 800, 20);
  page().waitUntilTrue("location.pathname === '/'", "the session cookie survived");
}

TEST_F(MainWindowTest, CannotBeMadeSmallerThanItsMinimumSize) {
  const auto window = application().waitForMainWindow();
  desktop().display().resize(window.id, 300, 200);
  waitUntil([&] { return application().waitForMainWindow().content.width == 760; },
            "the window has its least size");
  page().waitUntilTrue("innerWidth === 760 && innerHeight === 560", "the page has its least size");
}

TEST_F(MainWindowTest, FollowsTheLanguageThatTheUserChoosesOnTheService) {
  signIn();
  serviceClient().changeSettings({{"locale", "ru"}});
  page().evaluate("window.dispatchEvent(new Event('tolvin:localesaved'))");
  waitUntil([&] { return application().waitForMainWindow().title == "Навора"; },
            "the window's title is in Russian");
}

// A signed-in user with an alert of the page, the About window and the capture panel on the screen.
class HiddenApplicationTest : public CaptureTest {
 protected:
  void SetUp() override {
    CaptureTest::SetUp();
    if (HasFatalFailure()) return;
    const auto main = application().waitForMainWindow();
    desktop().mouse().click({main.content.x + 30, main.content.y + 14});
    widget("menu item", "About Navora").press();
    waitForWindows(2);
    page().evaluate("setTimeout(() => { alert('Read this'); window.answered = true; })");
    widget("push button", "OK");
    waitForWindows(3);
    openPanel();
    typeDraft("kept");
  }

  void waitForWindows(std::size_t count) {
    waitUntil([&] { return application().windows().size() == count; },
              std::to_string(count) + " windows are shown", defaultTimeout(),
              [&] { return desktop().display().describeWindows(); });
  }
};

TEST_F(HiddenApplicationTest, HasNoWindowLeftAndShowsTheDialogsAgainWithTheMainWindow) {
  desktop().keyboard().chord("Control+h");
  waitForWindows(0);
  application().run({});
  waitForWindows(3);
  widget("push button", "OK").press();
  page().waitUntilTrue("window.answered", "the alert is answered");
  waitForWindows(2);
  openPanel();
  EXPECT_EQ(draft(), "kept");
}

}  // namespace
}  // namespace navora::driver
