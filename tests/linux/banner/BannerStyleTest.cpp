#include <gdkmm/frameclock.h>
#include <glibmm/main.h>
#include <gmock/gmock.h>
#include <gtkmm/popover.h>

#include "hosts/linux/system/GLibSupport.h"
#include "linux/banner/UpdateBannerTest.h"

namespace navora {
namespace {

using Button = UpdateBannerButton;
using Progress = UpdateBannerProgress;
using driver::PixelColor;

class BannerStyleTest : public UpdateBannerTest {
 protected:
  // Returns the colour of the card beside its texts.
  PixelColor background() {
    const auto card = shotOfCard();
    return card.pixel({card.width() - 8, card.height() / 2});
  }
  static int brightness(const PixelColor& color) {
    return (color.red + color.green + color.blue) / 3;
  }
  // Returns the background colour of the theme's popovers.
  static PixelColor popoverColor() {
    Gtk::Popover popover;
    GdkRGBA* color = nullptr;
    gtk_style_context_get(popover.get_style_context()->gobj(), GTK_STATE_FLAG_NORMAL,
                          "background-color", &color, nullptr);
    const auto channel = [](double value) { return static_cast<int>(std::lround(value * 255)); };
    const PixelColor found{channel(color->red), channel(color->green), channel(color->blue)};
    gdk_rgba_free(color);
    return found;
  }
  std::size_t redPixels() {
    return display_.screenshot(onScreen(button(Button::primary))).pixelsLike({255, 59, 48}, 24);
  }
  bool isBackground(const PixelColor& color) { return color.distance(popoverColor()) <= 3; }
};

TEST_F(BannerStyleTest, HasTheBackgroundOfTheThemesPopovers) {
  colorScheme_.setAppearance(WindowAppearance::light);
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(waitUntil([this] { return isBackground(background()); }));
  EXPECT_GT(brightness(background()), 200);
  colorScheme_.setAppearance(WindowAppearance::dark);
  ASSERT_TRUE(
      waitUntil([this] { return isBackground(background()) && brightness(background()) < 90; }));
  colorScheme_.setAppearance(WindowAppearance::light);
  EXPECT_TRUE(
      waitUntil([this] { return isBackground(background()) && brightness(background()) > 200; }));
}

TEST_F(BannerStyleTest, HasAReadablePrimaryButtonInRed) {
  ASSERT_TRUE(showBanner(offer()));
  for (const auto appearance : {WindowAppearance::light, WindowAppearance::dark}) {
    colorScheme_.setAppearance(appearance);
    const auto place = onScreen(button(Button::primary));
    ASSERT_TRUE(waitUntil(
        [&] { return redPixels() > static_cast<std::size_t>(place.width * place.height / 2); }));
    EXPECT_GT(display_.screenshot(place).pixelsLike({255, 255, 255}, 40), 20U);
  }
  EXPECT_LT(display_.screenshot(onScreen(button(Button::secondary))).pixelsLike({255, 59, 48}, 24),
            1U);
}

TEST_F(BannerStyleTest, ShowsWhenThePrimaryButtonIsDisabled) {
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(waitUntil([this] { return redPixels() > 100; }));
  auto content = offer();
  content.button(Button::primary).enabled = false;
  banner_->setContent(content);
  ASSERT_TRUE(waitUntil([this] { return redPixels() == 0; }));
  const auto shown = display_.screenshot(onScreen(button(Button::primary)));
  const auto color = shown.pixel({4, shown.height() / 2});
  EXPECT_GT(color.red, color.green + 40);
}

TEST_F(BannerStyleTest, ShowsThePageOutsideItsRoundedCorners) {
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(waitUntil([this] { return isBackground(background()); }));
  const auto card = shotOfCard();
  const int right = card.width() - 1;
  const int bottom = card.height() - 1;
  for (const driver::Point corner :
       {driver::Point{0, 0}, {right, 0}, {0, bottom}, {right, bottom}, {3, 3}, {right - 3, 3}})
    EXPECT_EQ(card.pixel(corner), pageColor) << corner.x << ", " << corner.y;
  for (const driver::Point inside :
       {driver::Point{7, 7}, {right - 7, 7}, {7, bottom - 7}, {right - 7, bottom - 7}})
    EXPECT_TRUE(isBackground(card.pixel(inside))) << inside.x << ", " << inside.y;
}

TEST_F(BannerStyleTest, HasAHairlineBorder) {
  ASSERT_TRUE(showBanner(offer()));
  for (const auto appearance : {WindowAppearance::light, WindowAppearance::dark}) {
    colorScheme_.setAppearance(appearance);
    ASSERT_TRUE(waitUntil([this] { return isBackground(background()); }));
    const auto card = shotOfCard();
    const int middle = card.height() / 2;
    for (const int x : {0, card.width() - 1}) {
      EXPECT_GT(card.pixel({x, middle}).distance(background()), 4) << x;
      EXPECT_GT(card.pixel({x, middle}).distance(pageColor), 60) << x;
    }
    EXPECT_TRUE(isBackground(card.pixel({1, middle})));
    EXPECT_TRUE(isBackground(card.pixel({card.width() / 2, 1})));
    EXPECT_GT(card.pixel({card.width() / 2, 0}).distance(background()), 4);
  }
}

TEST_F(BannerStyleTest, HasABorderlessCloseButton) {
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(waitUntil([this] { return isBackground(background()); }));
  const auto close = display_.screenshot(onScreen(button(Button::close)));
  ASSERT_EQ(close.width(), 24);
  ASSERT_EQ(close.height(), 24);
  for (int position = 0; position < 24; ++position) {
    for (const driver::Point edge :
         {driver::Point{position, 0}, {position, 23}, {0, position}, {23, position}})
      EXPECT_TRUE(isBackground(close.pixel(edge))) << edge.x << ", " << edge.y;
  }
  // The "×" is in the middle.
  int left = 24;
  int right = 0;
  int top = 24;
  int bottom = 0;
  for (int y = 0; y < 24; ++y) {
    for (int x = 0; x < 24; ++x) {
      if (close.pixel({x, y}).distance(popoverColor()) < 60) continue;
      left = std::min(left, x);
      right = std::max(right, x);
      top = std::min(top, y);
      bottom = std::max(bottom, y);
    }
  }
  EXPECT_GT(right, left + 4);
  EXPECT_NEAR((left + right) / 2.0, 11.5, 2);
  EXPECT_NEAR((top + bottom) / 2.0, 11.5, 3);
}

TEST_F(BannerStyleTest, ShowsAFraction) {
  ASSERT_TRUE(showBanner(downloading()));
  EXPECT_FALSE(banner_->bar().widget().get_visible());
  const auto filled = [&](double fraction) {
    banner_->setProgress(Progress::ofFraction(fraction));
    EXPECT_TRUE(waitUntil([&] { return isLaidOut(banner_->bar().widget()); }));
    EXPECT_DOUBLE_EQ(banner_->bar().widget().get_fraction(), fraction);
    EXPECT_FALSE(banner_->bar().isAnimating());
  };
  filled(0);
  filled(0.4);
  filled(1);
  banner_->setProgress({});
  EXPECT_FALSE(banner_->bar().widget().get_visible());
  EXPECT_FALSE(banner_->isHidden());
}

TEST_F(BannerStyleTest, FillsTheBarToTheFraction) {
  ASSERT_TRUE(showBanner(downloading()));
  banner_->setProgress(Progress::ofFraction(0.4));
  Gtk::Widget& bar = banner_->bar().widget();
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(bar); }));
  // The filled part ends at two fifths of the width.
  EXPECT_TRUE(waitUntil([&] {
    const auto shown = display_.screenshot(onScreen(bar));
    const int y = shown.height() / 2;
    const auto at = [&](double part) {
      return shown.pixel({static_cast<int>(part * shown.width()), y});
    };
    return at(0.05).distance(at(0.37)) < 10 && at(0.43).distance(at(0.95)) < 10 &&
           at(0.37).distance(at(0.43)) > 40;
  }));
}

TEST_F(BannerStyleTest, AnimatesIndeterminateProgress) {
  ASSERT_TRUE(showBanner(downloading()));
  banner_->setProgress(Progress::indeterminate());
  Gtk::Widget& bar = banner_->bar().widget();
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(bar); }));
  EXPECT_TRUE(banner_->bar().isAnimating());
  auto last = display_.screenshot(onScreen(bar));
  for (int change = 0; change < 5; ++change) {
    ASSERT_TRUE(
        waitUntil([&] { return display_.screenshot(onScreen(bar)).differingPixels(last) > 10; }));
    last = display_.screenshot(onScreen(bar));
  }
}

// Counts the frames of a window.
class FrameCounter {
 public:
  explicit FrameCounter(Gtk::Window& window)
      : updates_(window.get_frame_clock()->gobj(), "update",
                 G_CALLBACK(+[](GdkFrameClock*, gpointer count) { ++*static_cast<int*>(count); }),
                 &count_) {}

  // Draws everything that is due, then returns the number of frames within 300 milliseconds.
  int next() {
    runPendingEvents();
    count_ = 0;
    int ticks = 0;
    Glib::signal_timeout().connect([&] { return ++ticks < 12; }, 25);
    EXPECT_TRUE(waitUntil([&] { return ticks == 12; }));
    return count_;
  }

 private:
  int count_ = 0;
  SignalConnection updates_;
};

// Turns GTK's animations on for a scope; the tests' desktop has them off.
class AnimationsOn {
 public:
  AnimationsOn() { set(TRUE); }
  ~AnimationsOn() { set(FALSE); }
  AnimationsOn(const AnimationsOn&) = delete;
  AnimationsOn& operator=(const AnimationsOn&) = delete;

 private:
  static void set(gboolean on) {
    g_object_set(gtk_settings_get_default(), "gtk-enable-animations", on, nullptr);
  }
};

TEST_F(BannerStyleTest, DoesNotAnimateWhileHidden) {
  const AnimationsOn animations;
  banner_->setProgress(Progress::indeterminate());
  EXPECT_FALSE(banner_->bar().isAnimating());
  ASSERT_TRUE(showBanner(downloading()));
  ASSERT_TRUE(waitUntil([&] { return banner_->bar().isAnimating(); }));
  FrameCounter frames(window_->native());
  EXPECT_GT(frames.next(), 3);
  banner_->setHidden(true);
  EXPECT_FALSE(banner_->bar().isAnimating());
  EXPECT_LE(frames.next(), 2);

  banner_->setHidden(false);
  ASSERT_TRUE(waitUntil([&] { return banner_->bar().isAnimating(); }));
  banner_->setProgress(Progress::ofFraction(0.5));
  EXPECT_FALSE(banner_->bar().isAnimating());
  frames.next();
  EXPECT_LE(frames.next(), 2);
}

TEST_F(BannerStyleTest, DoesNotAnimateInAMinimisedOrHiddenWindow) {
  const AnimationsOn animations;
  ASSERT_TRUE(showBanner(downloading()));
  banner_->setProgress(Progress::indeterminate());
  ASSERT_TRUE(waitUntil([&] { return banner_->bar().isAnimating(); }));
  FrameCounter frames(window_->native());
  const auto id = infoOf(window_->native()).id;
  display_.minimise(id);
  ASSERT_TRUE(waitUntil([&] { return window_->isMiniaturized(); }));
  EXPECT_LE(frames.next(), 2);
  window_->deminiaturize();
  ASSERT_TRUE(waitUntil([&] { return isReadyForKeys(window_->native()); }));
  EXPECT_GT(frames.next(), 3);

  window_->orderOut();
  EXPECT_FALSE(banner_->bar().isAnimating());
  ASSERT_TRUE(
      waitUntil([&] { return !display_.window(id).value_or(driver::WindowInfo{}).mapped; }));
  ASSERT_TRUE(show(*window_));
  EXPECT_TRUE(banner_->bar().isAnimating());
}

TEST_F(BannerStyleTest, ContinuesTheAnimationWhenSetAgain) {
  ASSERT_TRUE(showBanner(downloading()));
  for (int time = 0; time < 3; ++time) {
    banner_->setProgress(Progress::indeterminate());
    EXPECT_TRUE(banner_->bar().isAnimating());
  }
  banner_->setProgress({});
  EXPECT_FALSE(banner_->bar().isAnimating());
}

}  // namespace
}  // namespace navora
