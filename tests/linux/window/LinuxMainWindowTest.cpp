#include <cstdlib>

#include <gtest/gtest.h>
#include <gtkmm/drawingarea.h>

#include "hosts/linux/window/LinuxMainWindow.h"
#include "linux/window/WindowTest.h"

namespace navora {
namespace {

class LinuxMainWindowTest : public WindowTest {
 protected:
  // Makes and shows a window and returns the size of its content on the screen.
  Size shownSize() {
    const auto window = makeWindow();
    EXPECT_TRUE(show(*window));
    const auto content = infoOf(window->native()).content;
    return {static_cast<double>(content.width), static_cast<double>(content.height)};
  }
  static testing::AssertionResult waitForSize(LinuxMainWindow& window, int width, int height) {
    return waitUntil([&] {
      const auto content = infoOf(window.native()).content;
      return content.width == width && content.height == height;
    });
  }
};

TEST_F(LinuxMainWindowTest, StartsHidden) {
  const auto window = makeWindow();
  runPendingEvents();
  EXPECT_FALSE(window->isVisible());
  EXPECT_FALSE(window->isMiniaturized());
}

TEST_F(LinuxMainWindowTest, IsCentredInItsSizeWithItsTitle) {
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  const auto info = infoOf(window->native());
  EXPECT_EQ(info.title, "Title of the window");
  EXPECT_EQ(info.content.width, 1100);
  EXPECT_EQ(info.content.height, 760);
  // The window manager centres the window with its frame.
  constexpr int frame = 30;
  const auto& screen = display_.connection().screen();
  EXPECT_LE(std::abs(info.content.center().x - screen.width_in_pixels / 2), frame);
  EXPECT_LE(std::abs(info.content.center().y - screen.height_in_pixels / 2), frame);
}

TEST_F(LinuxMainWindowTest, SetTitleChangesTheTitle) {
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  window->setTitle("Заметки & <b>notes</b>");
  EXPECT_TRUE(
      waitUntil([&] { return infoOf(window->native()).title == "Заметки & <b>notes</b>"; }));
}

TEST_F(LinuxMainWindowTest, CannotBeResizedBelowItsMinimum) {
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  display_.resize(infoOf(window->native()).id, 100, 100);
  EXPECT_TRUE(waitForSize(*window, 700, 500));
}

// A menu bar of a known height.
class MenuBarSizeTest : public LinuxMainWindowTest {
 protected:
  static constexpr int barHeight = 30;

  std::unique_ptr<LinuxMainWindow> makeWindowWithBar() {
    bar_.set_size_request(-1, barHeight);
    bar_.show();
    auto window = makeWindow();
    window->setMenuBar(bar_);
    return window;
  }
  static Size contentSize(LinuxMainWindow& window) {
    return {static_cast<double>(window.overlay().get_allocated_width()),
            static_cast<double>(window.overlay().get_allocated_height())};
  }

  Gtk::DrawingArea bar_;
};

TEST_F(MenuBarSizeTest, TheContentHasTheDescribedSizeBelowIt) {
  const auto window = makeWindowWithBar();
  ASSERT_TRUE(show(*window));
  EXPECT_EQ(contentSize(*window), (Size{1100, 760}));
  EXPECT_TRUE(waitForSize(*window, 1100, 760 + barHeight));
}

TEST_F(MenuBarSizeTest, TheContentKeepsItsMinimumBelowIt) {
  const auto window = makeWindowWithBar();
  ASSERT_TRUE(show(*window));
  display_.resize(infoOf(window->native()).id, 100, 100);
  EXPECT_TRUE(waitForSize(*window, 700, 500 + barHeight));
  EXPECT_TRUE(waitUntil([&] { return contentSize(*window) == Size{700, 500}; }));
}

TEST_F(MenuBarSizeTest, AStoredSizeIsTheWholeWindows) {
  {
    const auto window = makeWindowWithBar();
    ASSERT_TRUE(show(*window));
    display_.resize(infoOf(window->native()).id, 900, 600);
    const Json size = {{"width", 900}, {"height", 600}};
    ASSERT_TRUE(waitUntil([&] { return defaults_.value("TestWindow") == size; }));
  }
  const auto window = makeWindowWithBar();
  ASSERT_TRUE(show(*window));
  EXPECT_TRUE(waitForSize(*window, 900, 600));
}

TEST_F(MenuBarSizeTest, AStoredSizeIsRaisedToTheMinimumWithTheBar) {
  defaults_.setValue("TestWindow", Json{{"width", 800}, {"height", 500}});
  const auto window = makeWindowWithBar();
  ASSERT_TRUE(show(*window));
  EXPECT_TRUE(waitForSize(*window, 800, 500 + barHeight));
}

TEST_F(LinuxMainWindowTest, StoresItsSizeButNotItsPosition) {
  {
    const auto window = makeWindow();
    ASSERT_TRUE(show(*window));
    window->native().move(5, 5);
    display_.resize(infoOf(window->native()).id, 900, 600);
    const Json size = {{"width", 900}, {"height", 600}};
    ASSERT_TRUE(waitUntil([&] { return defaults_.value("TestWindow") == size; }));
  }
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  const auto content = infoOf(window->native()).content;
  EXPECT_EQ(content.width, 900);
  EXPECT_EQ(content.height, 600);
  EXPECT_LE(std::abs(content.center().x - display_.connection().screen().width_in_pixels / 2), 30);
}

TEST_F(LinuxMainWindowTest, StoresASizeThatChangedJustBeforeItIsDestroyed) {
  {
    const auto window = makeWindow();
    ASSERT_TRUE(show(*window));
    display_.resize(infoOf(window->native()).id, 950, 650);
    int width = 0;
    int height = 0;
    ASSERT_TRUE(waitUntil([&] {
      window->native().get_size(width, height);
      return width == 950 && height == 650;
    }));
  }
  EXPECT_EQ(defaults_.value("TestWindow"), (Json{{"width", 950}, {"height", 650}}));
}

TEST_F(LinuxMainWindowTest, RaisesAStoredSizeToTheMinimum) {
  defaults_.setValue("TestWindow", {{"width", 1}, {"height", 2.5}});
  EXPECT_EQ(shownSize(), (Size{700, 500}));
}

TEST_F(LinuxMainWindowTest, LimitsAStoredSizeToTheScreen) {
  for (const Json& length : {Json(5000), Json(1e308), Json(9223372036854775807)}) {
    defaults_.setValue("TestWindow", {{"width", length}, {"height", length}});
    const Size size = shownSize();
    EXPECT_LE(size.width, display_.connection().screen().width_in_pixels) << length;
    EXPECT_LE(size.height, display_.connection().screen().height_in_pixels) << length;
    EXPECT_GE(size.width, 1100) << length;
    EXPECT_GE(size.height, 760) << length;
  }
}

TEST_F(LinuxMainWindowTest, IgnoresAnInvalidStoredSize) {
  for (const char* text :
       {"null", "[]", "\"1100x760\"", "7", R"({"width": 900})", R"({"width": 0, "height": 600})",
        R"({"width": -900, "height": 600})", R"({"width": "900", "height": "600"})",
        R"({"width": null, "height": 600})", R"({"width": true, "height": true})"}) {
    defaults_.setValue("TestWindow", *parseJson(text));
    EXPECT_EQ(shownSize(), (Size{1100, 760})) << text;
  }
}

TEST_F(LinuxMainWindowTest, IsDeminiaturized) {
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  display_.minimise(infoOf(window->native()).id);
  ASSERT_TRUE(waitUntil([&] { return window->isMiniaturized(); }));
  window->deminiaturize();
  ASSERT_TRUE(waitUntil([&] { return !window->isMiniaturized(); }));
  EXPECT_TRUE(waitUntil([&] { return isReadyForKeys(window->native()); }));
}

TEST_F(LinuxMainWindowTest, IsOrderedOutAndShownAgain) {
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  const auto id = infoOf(window->native()).id;
  window->orderOut();
  EXPECT_FALSE(window->isVisible());
  ASSERT_TRUE(waitUntil([&] {
    const auto info = display_.window(id);
    return !info || !info->mapped;
  }));
  ASSERT_TRUE(show(*window));
  EXPECT_TRUE(window->isVisible());
}

TEST_F(LinuxMainWindowTest, IsForcedInFrontOfAnotherWindow) {
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  const auto other = makeWindow();
  ASSERT_TRUE(show(*other));
  ASSERT_FALSE(window->native().is_active());
  window->forceToFront();
  EXPECT_TRUE(waitUntil([&] { return isReadyForKeys(window->native()); }));
}

TEST_F(LinuxMainWindowTest, TheDelegateDecidesWhetherItCloses) {
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  display_.close(infoOf(window->native()).id);
  ASSERT_TRUE(waitUntil([&] { return delegate_.closeRequests == 1; }));
  runPendingEvents();
  EXPECT_TRUE(window->isVisible());

  delegate_.allowsClose = true;
  display_.close(infoOf(window->native()).id);
  EXPECT_TRUE(waitUntil([&] { return !window->isVisible(); }));
  EXPECT_EQ(delegate_.closeRequests, 2);
}

TEST_F(LinuxMainWindowTest, MayBeHiddenInsteadOfClosed) {
  const auto window = makeWindow();
  ASSERT_TRUE(show(*window));
  display_.close(infoOf(window->native()).id);
  ASSERT_TRUE(waitUntil([&] { return delegate_.closeRequests == 1; }));
  window->orderOut();
  ASSERT_TRUE(show(*window));
  EXPECT_EQ(infoOf(window->native()).content.width, 1100);
}

}  // namespace
}  // namespace navora
