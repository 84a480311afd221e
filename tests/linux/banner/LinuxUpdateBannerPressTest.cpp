#include <gmock/gmock.h>

#include "linux/banner/UpdateBannerTest.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Button = UpdateBannerButton;

class LinuxUpdateBannerPressTest : public UpdateBannerTest {
 protected:
  testing::AssertionResult click(Button which) {
    if (!waitUntil([&] { return isLaidOut(button(which)); })) return testing::AssertionFailure();
    mouse_.click(onScreen(button(which)).center());
    return testing::AssertionSuccess();
  }
  // Clicks the page and waits for it: all earlier input has been processed then.
  testing::AssertionResult clickPage() {
    const int before = clicksOnPage_;
    const auto area = onScreen(window_->overlay());
    mouse_.click({area.x + 20, area.y + area.height - 20});
    return waitUntil([&] { return clicksOnPage_ > before; });
  }
  testing::AssertionResult focus(Button which) {
    button(which).grab_focus();
    return waitUntil([&] { return button(which).has_focus(); });
  }
};

TEST_F(LinuxUpdateBannerPressTest, ReportsEveryButton) {
  ASSERT_TRUE(showBanner(offer()));
  for (const auto which : {Button::primary, Button::secondary, Button::tertiary, Button::close}) {
    delegateOfBanner_.presses.clear();
    ASSERT_TRUE(click(which));
    ASSERT_TRUE(waitUntil([&] { return !delegateOfBanner_.presses.empty(); }));
    EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(which));
  }
  EXPECT_EQ(clicksOnPage_, 0);
}

TEST_F(LinuxUpdateBannerPressTest, IgnoresPressesWithoutADelegate) {
  ASSERT_TRUE(showBanner(offer()));
  banner_->setDelegate(nullptr);
  ASSERT_TRUE(click(Button::primary));
  ASSERT_TRUE(clickPage());
  EXPECT_THAT(delegateOfBanner_.presses, IsEmpty());
}

TEST_F(LinuxUpdateBannerPressTest, TheSecondClickOfADoubleClickMeetsTheNewContent) {
  delegateOfBanner_.onPress = [this](Button) { banner_->setContent(disabled(offer())); };
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(button(Button::primary)); }));
  mouse_.doubleClick(onScreen(button(Button::primary)).center());
  ASSERT_TRUE(waitUntil([this] { return !delegateOfBanner_.presses.empty(); }));
  ASSERT_TRUE(clickPage());
  EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(Button::primary));
}

TEST_F(LinuxUpdateBannerPressTest, DisabledButtonsAreVisibleButInert) {
  ASSERT_TRUE(showBanner(disabled(offer())));
  for (const auto which : {Button::primary, Button::secondary, Button::tertiary, Button::close}) {
    EXPECT_TRUE(button(which).get_mapped());
    ASSERT_TRUE(click(which));
    button(which).clicked();
  }
  ASSERT_TRUE(clickPage());
  EXPECT_THAT(delegateOfBanner_.presses, IsEmpty());
}

TEST_F(LinuxUpdateBannerPressTest, TheDelegateMayChangeTheContent) {
  delegateOfBanner_.onPress = [this](Button) {
    banner_->setContent(downloading());
    banner_->setProgress(UpdateBannerProgress::indeterminate());
    banner_->setHidden(true);
    banner_->setHidden(false);
  };
  for (const auto which : {Button::primary, Button::secondary, Button::tertiary, Button::close}) {
    delegateOfBanner_.presses.clear();
    ASSERT_TRUE(showBanner(offer()));
    ASSERT_TRUE(click(which));
    ASSERT_TRUE(waitUntil([&] { return !delegateOfBanner_.presses.empty(); }));
    ASSERT_TRUE(clickPage());
    EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(which));
    EXPECT_FALSE(button(Button::primary).get_visible());
  }
}

TEST_F(LinuxUpdateBannerPressTest, TheDelegateMayDestroyTheBanner) {
  delegateOfBanner_.onPress = [this](Button) { banner_.reset(); };
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(click(Button::primary));
  ASSERT_TRUE(waitUntil([this] { return banner_ == nullptr; }));
  ASSERT_TRUE(clickPage());
  EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(Button::primary));
}

TEST_F(LinuxUpdateBannerPressTest, IgnoresAClickThatBeganOnAnotherTitle) {
  ASSERT_TRUE(showBanner(downloading("Cancel")));
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(button(Button::secondary)); }));
  mouse_.moveTo(onScreen(button(Button::secondary)).center());
  mouse_.press();
  ASSERT_TRUE(waitUntil(
      [&] { return (button(Button::secondary).get_state_flags() & Gtk::STATE_FLAG_ACTIVE) != 0; }));
  banner_->setContent(downloading("Later"));
  mouse_.release();
  ASSERT_TRUE(clickPage());
  EXPECT_THAT(delegateOfBanner_.presses, IsEmpty());
  ASSERT_TRUE(click(Button::secondary));
  EXPECT_TRUE(waitUntil([this] { return delegateOfBanner_.presses.size() == 1; }));
}

TEST_F(LinuxUpdateBannerPressTest, IgnoresAKeyThatWasPressedOnAnotherTitle) {
  ASSERT_TRUE(showBanner(downloading("Cancel")));
  ASSERT_TRUE(focus(Button::secondary));
  keyboard_.chord("Return");
  ASSERT_TRUE(waitUntil(
      [&] { return (button(Button::secondary).get_state_flags() & Gtk::STATE_FLAG_ACTIVE) != 0; }));
  banner_->setContent(downloading("Later"));
  ASSERT_TRUE(waitUntil(
      [&] { return (button(Button::secondary).get_state_flags() & Gtk::STATE_FLAG_ACTIVE) == 0; }));
  EXPECT_THAT(delegateOfBanner_.presses, IsEmpty());
  keyboard_.chord("space");
  EXPECT_TRUE(waitUntil([this] { return delegateOfBanner_.presses.size() == 1; }));
}

TEST_F(LinuxUpdateBannerPressTest, ReturnAndSpacePressTheFocusedButton) {
  ASSERT_TRUE(showBanner(offer()));
  for (const auto which : {Button::primary, Button::secondary, Button::tertiary, Button::close}) {
    for (const char* key : {"Return", "space"}) {
      delegateOfBanner_.presses.clear();
      ASSERT_TRUE(focus(which));
      keyboard_.chord(key);
      ASSERT_TRUE(waitUntil([&] { return !delegateOfBanner_.presses.empty(); })) << key;
      EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(which));
    }
  }
}

TEST_F(LinuxUpdateBannerPressTest, EscapePressesTheCloseButton) {
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(focus(Button::secondary));
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitUntil([this] { return !delegateOfBanner_.presses.empty(); }));
  EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(Button::close));
}

TEST_F(LinuxUpdateBannerPressTest, EscapeDoesNothingOutsideOrWithoutACloseButton) {
  int escapes = 0;
  page_.add_events(Gdk::KEY_PRESS_MASK);
  page_.signal_key_press_event().connect([&](GdkEventKey* event) {
    escapes += event->keyval == GDK_KEY_Escape ? 1 : 0;
    return false;
  });
  ASSERT_TRUE(showBanner(offer()));
  keyboard_.chord("Escape");
  ASSERT_TRUE(waitUntil([&] { return escapes == 1; }));
  EXPECT_THAT(delegateOfBanner_.presses, IsEmpty());

  banner_->setContent(downloading());
  ASSERT_TRUE(focus(Button::secondary));
  keyboard_.chord("Escape");
  keyboard_.chord("Return");
  ASSERT_TRUE(waitUntil([this] { return !delegateOfBanner_.presses.empty(); }));
  EXPECT_THAT(delegateOfBanner_.presses, ElementsAre(Button::secondary));
  EXPECT_FALSE(banner_->isHidden());
}

TEST_F(LinuxUpdateBannerPressTest, PassesEventsOutsideTheCardToThePage) {
  ASSERT_TRUE(showBanner(offer()));
  const auto card = onScreen(banner_->card());
  const int right = card.x + card.width;
  const int bottom = card.y + card.height;
  int expected = 0;
  for (const driver::Point outside : {driver::Point{card.x - 2, card.y + 40},
                                      {right + 2, card.y + 40},
                                      {card.x + 200, card.y - 2},
                                      {card.x + 200, bottom + 2},
                                      {card.x + 1, card.y + 1},
                                      {right - 2, card.y + 1},
                                      {card.x + 1, bottom - 2},
                                      {right - 2, bottom - 2}}) {
    mouse_.click(outside);
    ++expected;
    ASSERT_TRUE(waitUntil([&] { return clicksOnPage_ == expected; }))
        << outside.x - card.x << ", " << outside.y - card.y;
  }
  mouse_.scroll({card.x + 200, bottom + 10}, 1);
  EXPECT_TRUE(waitUntil([&] { return scrollsOnPage_ == 1; }));
}

TEST_F(LinuxUpdateBannerPressTest, KeepsEventsOnTheCardFromThePage) {
  int scrollsOnWindow = 0;
  window_->native().add_events(Gdk::SCROLL_MASK);
  window_->native().signal_scroll_event().connect([&](GdkEventScroll*) {
    ++scrollsOnWindow;
    return true;
  });
  ASSERT_TRUE(showBanner(offer()));
  const auto card = onScreen(banner_->card());
  mouse_.click({card.x + 7, card.y + 7});
  mouse_.click({card.x + 300, card.y + card.height - 6});
  mouse_.click(onScreen(*labels()[2]).center());
  mouse_.scroll(card.center(), 1);
  ASSERT_TRUE(waitUntil([&] { return scrollsOnWindow == 1; }));
  ASSERT_TRUE(clickPage());
  EXPECT_EQ(clicksOnPage_, 1);
  EXPECT_EQ(scrollsOnPage_, 0);
  banner_->setHidden(true);
  ASSERT_TRUE(
      waitUntil([&] { return display_.screenshot(card).pixelsLike(pageColor) > 400U * 100U; }));
  mouse_.click(card.center());
  EXPECT_TRUE(waitUntil([&] { return clicksOnPage_ == 2; }));
}

}  // namespace
}  // namespace navora
