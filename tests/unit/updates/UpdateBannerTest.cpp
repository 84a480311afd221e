#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fakes/EventLog.h"
#include "fakes/FakeMainWindow.h"
#include "fakes/FakeUpdateBannerView.h"
#include "fakes/LocaleScope.h"
#include "locale/DesktopLocale.h"
#include "updates/UpdateBanner.h"

namespace navora {
namespace {

using Button = UpdateBannerButton;
using Progress = UpdateBannerProgress;
using testing::ElementsAre;

constexpr Button allButtons[] = {Button::primary, Button::secondary, Button::tertiary,
                                 Button::close};

class UpdateBannerTest : public testing::Test {
 protected:
  UpdateBannerPresentation::Action pressed(const std::string& name) {
    return [this, name] { presses.push_back(name); };
  }
  static UpdateBannerPresentation::Text text(const std::string& words) {
    return [words] { return words; };
  }
  // Returns a state with every part.
  UpdateBannerPresentation full() {
    return {text("Heading"),
            text("Detail"),
            0.25,
            {text("First"), pressed("primary")},
            {text("Second"), pressed("secondary")},
            {text("Third"), pressed("tertiary")},
            pressed("close")};
  }
  UpdateBannerPresentation bare() {
    return {text("Heading"), text("Detail"), std::nullopt, {}, {}, {}, {}};
  }
  void speakEnglish() { locale.prefer({"en"}); }

  LocaleScope locale;
  FakeUpdateBannerView::Screen screen;
  UpdateBanner banner{std::make_unique<FakeUpdateBannerView>(screen)};
  std::vector<std::string> presses;
};

TEST_F(UpdateBannerTest, IsInitiallyHidden) {
  EXPECT_TRUE(screen.hidden);
  EXPECT_TRUE(banner.isHidden());
  EXPECT_EQ(screen.content.title, "");
  for (const Button which : allButtons)
    EXPECT_FALSE(screen.button(which).visible);
}

TEST_F(UpdateBannerTest, HasItsLabelAndToolTipsFromTheStart) {
  EXPECT_EQ(screen.content.accessibilityLabel, "Обновление Наворы");
  EXPECT_EQ(screen.button(Button::close).title, "×");
  EXPECT_EQ(screen.button(Button::close).toolTip, "Закрыть до завтра");
  EXPECT_EQ(screen.button(Button::close).accessibilityLabel, "Закрыть до завтра");
  EXPECT_EQ(screen.button(Button::tertiary).toolTip,
            "Не напоминать об этой версии. Новые версии будут показаны.");
}

TEST_F(UpdateBannerTest, IsAttachedToTheWindow) {
  EventLog log;
  FakeMainWindowDelegate delegate;
  FakeMainWindow window(log, {"", {1240, 820}, {760, 560}, ""}, delegate);
  banner.attach(window);
  EXPECT_EQ(screen.window, &window);
}

TEST_F(UpdateBannerTest, ShowsEveryPartOfAState) {
  banner.present(full());
  EXPECT_FALSE(screen.hidden);
  EXPECT_EQ(screen.content.title, "Heading");
  EXPECT_EQ(screen.content.detail, "Detail");
  EXPECT_EQ(screen.progress, Progress::ofFraction(0.25));
  EXPECT_EQ(screen.button(Button::primary).title, "First");
  EXPECT_EQ(screen.button(Button::secondary).title, "Second");
  EXPECT_EQ(screen.button(Button::tertiary).title, "Third");
  EXPECT_EQ(screen.button(Button::close).title, "×");
  for (const Button which : allButtons)
    EXPECT_TRUE(screen.canPress(which));
}

TEST_F(UpdateBannerTest, HidesThePartsThatAStateDoesNotHave) {
  banner.present(full());
  banner.present(bare());
  EXPECT_FALSE(screen.hidden);
  EXPECT_EQ(screen.progress, Progress());
  for (const Button which : allButtons)
    EXPECT_FALSE(screen.button(which).visible);
}

TEST_F(UpdateBannerTest, ShowsAButtonByItsTitleAndTheCloseButtonByItsAction) {
  auto state = bare();
  state.primary = {text("First"), nullptr};
  state.secondary = {nullptr, pressed("secondary")};
  banner.present(std::move(state));
  EXPECT_TRUE(screen.button(Button::primary).visible);
  EXPECT_FALSE(screen.button(Button::secondary).visible);
  EXPECT_FALSE(screen.button(Button::close).visible);
  screen.press(Button::primary);
  EXPECT_TRUE(presses.empty());
}

TEST_F(UpdateBannerTest, RunsTheActionOfThePressedButton) {
  for (const Button which : allButtons) {
    banner.present(full());
    screen.press(which);
  }
  EXPECT_THAT(presses, ElementsAre("primary", "secondary", "tertiary", "close"));
}

TEST_F(UpdateBannerTest, RunsAtMostOneAction) {
  for (const Button first : allButtons) {
    banner.present(full());
    presses.clear();
    screen.press(first);
    for (const Button second : allButtons)
      screen.press(second);
    EXPECT_EQ(presses.size(), 1u);
  }
}

TEST_F(UpdateBannerTest, KeepsTheButtonsOfAStateThatAnActionPresents) {
  auto state = full();
  state.primary.action = [this] {
    presses.push_back("primary");
    banner.present(full());
  };
  banner.present(std::move(state));
  screen.press(Button::primary);
  screen.press(Button::secondary);
  EXPECT_THAT(presses, ElementsAre("primary", "secondary"));
}

TEST_F(UpdateBannerTest, DisablesItsButtonsUntilTheNextState) {
  banner.present(full());
  banner.disableActions();
  for (const Button which : allButtons) {
    EXPECT_TRUE(screen.button(which).visible);
    EXPECT_FALSE(screen.button(which).enabled);
    // A press that the view reports late.
    screen.delegate->bannerButtonPressed(which);
  }
  EXPECT_TRUE(presses.empty());
  banner.refreshLocale();
  EXPECT_FALSE(screen.button(Button::primary).enabled);
  banner.present(full());
  screen.press(Button::primary);
  EXPECT_THAT(presses, ElementsAre("primary"));
}

TEST_F(UpdateBannerTest, KeepsButtonsEnabledWhenActionsAreCleared) {
  banner.present(full());
  banner.clearActions();
  for (const Button which : allButtons)
    screen.press(which);
  EXPECT_TRUE(presses.empty());
}

TEST_F(UpdateBannerTest, BoundsTheProgress) {
  banner.present(full());
  banner.setProgress(0.5);
  EXPECT_EQ(screen.progress, Progress::ofFraction(0.5));
  banner.setProgress(1.5);
  EXPECT_EQ(screen.progress, Progress::ofFraction(1));
  banner.setProgress(0);
  EXPECT_EQ(screen.progress, Progress::ofFraction(0));
  banner.setProgress(-1);
  EXPECT_EQ(screen.progress, Progress::indeterminate());
  banner.setProgress(std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(screen.progress, Progress::indeterminate());
}

TEST_F(UpdateBannerTest, StartsWithAnIndeterminateBar) {
  auto state = full();
  state.progress = -1;
  banner.present(std::move(state));
  EXPECT_EQ(screen.progress, Progress::indeterminate());
}

TEST_F(UpdateBannerTest, ShowsNoBarInAStateWithoutOne) {
  banner.present(bare());
  banner.setProgress(0.5);
  EXPECT_EQ(screen.progress, Progress());
}

TEST_F(UpdateBannerTest, AddsARetryButton) {
  banner.present(bare());
  banner.disableActions();
  banner.setRetry(pressed("retry"));
  EXPECT_EQ(screen.button(Button::primary).title, "Перезапустить");
  screen.press(Button::primary);
  EXPECT_THAT(presses, ElementsAre("retry"));
}

TEST_F(UpdateBannerTest, AddsACloseButton) {
  banner.present(bare());
  banner.disableActions();
  banner.setClose(pressed("close"));
  EXPECT_EQ(screen.button(Button::secondary).title, "Закрыть");
  screen.press(Button::secondary);
  EXPECT_THAT(presses, ElementsAre("close"));
}

TEST_F(UpdateBannerTest, StaysHiddenWhenAButtonIsAdded) {
  banner.present(bare());
  banner.hide();
  EXPECT_TRUE(banner.isHidden());
  banner.setClose(pressed("close"));
  EXPECT_TRUE(screen.hidden);
}

TEST_F(UpdateBannerTest, AnnouncesItsHeading) {
  banner.present(full());
  banner.announce();
  EXPECT_THAT(screen.announcements, ElementsAre("Heading"));
}

TEST_F(UpdateBannerTest, FollowsTheLanguage) {
  locale.setCatalogs(R"({"en": {
    "Навора": "Navora", "Закрыть": "Close", "Перезапустить": "Restart Navora",
    "Закрыть до завтра": "Close until tomorrow", "Обновление Наворы": "Navora update",
    "Не напоминать об этой версии. Новые версии будут показаны.": "Don’t remind"}})");
  auto state = full();
  state.heading = [] { return L("Навора"); };
  state.tertiary.title = [] { return L("Закрыть"); };
  banner.present(std::move(state));
  banner.setRetry(pressed("retry"));
  EXPECT_EQ(screen.content.title, "Навора");
  speakEnglish();
  EXPECT_EQ(screen.content.title, "Навора");
  banner.refreshLocale();
  EXPECT_EQ(screen.content.title, "Navora");
  EXPECT_EQ(screen.content.detail, "Detail");
  EXPECT_EQ(screen.content.accessibilityLabel, "Navora update");
  EXPECT_EQ(screen.button(Button::primary).title, "Restart Navora");
  EXPECT_EQ(screen.button(Button::secondary).title, "Second");
  EXPECT_EQ(screen.button(Button::tertiary).title, "Close");
  EXPECT_EQ(screen.button(Button::tertiary).toolTip, "Don’t remind");
  EXPECT_EQ(screen.button(Button::close).title, "×");
  EXPECT_EQ(screen.button(Button::close).toolTip, "Close until tomorrow");
  EXPECT_EQ(screen.button(Button::close).accessibilityLabel, "Close until tomorrow");
  screen.press(Button::primary);
  EXPECT_THAT(presses, ElementsAre("retry"));
}

TEST_F(UpdateBannerTest, RemovesItselfAsDelegateWhenItIsDestroyed) {
  FakeUpdateBannerView::Screen other;
  {
    const UpdateBanner gone(std::make_unique<FakeUpdateBannerView>(other));
  }
  EXPECT_EQ(other.delegate, nullptr);
}

}  // namespace
}  // namespace navora
