#include <gmock/gmock.h>
#include <pangomm/layout.h>

#include "linux/banner/UpdateBannerTest.h"
#include "support/Text.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Layout = UpdateBannerLayout;
using Button = UpdateBannerButton;

class LinuxUpdateBannerTest : public UpdateBannerTest {
 protected:
  testing::AssertionResult resizeTo(int width) {
    // Lifts the minimum size of the main window.
    window_->overlay().set_size_request(10, 10);
    return waitUntil([=, this] {
      if (window_->overlay().get_allocated_width() == width) return true;
      // Repeated, because the window manager learns of the new minimum asynchronously.
      display_.resize(infoOf(window_->native()).id, width, 500);
      return false;
    });
  }
  static bool isComplete(const Gtk::Label& label) { return !label.get_layout()->is_ellipsized(); }
};

TEST_F(LinuxUpdateBannerTest, StartsHiddenAndEmpty) {
  runPendingEvents();
  EXPECT_TRUE(banner_->isHidden());
  EXPECT_THAT(visibleWidgets(banner_->card()), IsEmpty());
  banner_->setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return isLaidOut(banner_->card()); }));
  EXPECT_THAT(texts(), IsEmpty());
  EXPECT_FALSE(banner_->isHidden());
}

TEST_F(LinuxUpdateBannerTest, WorksWithoutAWindow) {
  LinuxUpdateBanner other;
  other.setContent(offer());
  other.setProgress(UpdateBannerProgress::indeterminate());
  other.setHidden(false);
  EXPECT_FALSE(other.isHidden());
  other.announce("text");
  other.setHidden(true);
  EXPECT_TRUE(other.isHidden());
}

TEST_F(LinuxUpdateBannerTest, IsPlacedInTheTopRightCorner) {
  ASSERT_TRUE(showBanner(offer()));
  const auto content = onScreen(window_->overlay());
  const auto card = onScreen(banner_->card());
  EXPECT_EQ(card.width, 480);
  EXPECT_EQ(card.y - content.y, 14);
  EXPECT_EQ(content.x + content.width - (card.x + card.width), 18);
}

TEST_F(LinuxUpdateBannerTest, IsPlacedBelowTheMenuBar) {
  Gtk::EventBox bar;
  bar.set_size_request(-1, 30);
  bar.show();
  window_->setMenuBar(bar);
  ASSERT_TRUE(showBanner(offer()));
  EXPECT_TRUE(waitUntil(
      [&] { return onScreen(banner_->card()).y == onScreen(bar).y + onScreen(bar).height + 14; }));
}

TEST_F(LinuxUpdateBannerTest, HasTheLayoutsInsetsAndSpacing) {
  ASSERT_TRUE(showBanner(offer()));
  banner_->setProgress(UpdateBannerProgress::ofFraction(0.4));
  ASSERT_TRUE(waitUntil([this] { return isLaidOut(banner_->bar().widget()); }));
  const int inner = 480 - 2 * 16;
  const auto title = inCard(*labels()[0]);
  const auto detail = inCard(*labels()[2]);
  const auto close = inCard(button(Button::close));
  const auto bar = inCard(banner_->bar().widget());
  const auto primary = inCard(button(Button::primary));
  const auto secondary = inCard(button(Button::secondary));
  const auto tertiary = inCard(button(Button::tertiary));

  EXPECT_EQ(title.x, 16);
  EXPECT_EQ(close, (driver::Rectangle{480 - 16 - 24, 14, 24, 24}));
  EXPECT_EQ(title.x + title.width + 8, close.x);
  EXPECT_EQ(detail, (driver::Rectangle{16, 14 + 24 + 8, inner, detail.height}));
  EXPECT_EQ(bar, (driver::Rectangle{16, detail.y + detail.height + 8, inner, bar.height}));
  EXPECT_EQ(primary.x, 16);
  EXPECT_EQ(primary.y, bar.y + bar.height + 8);
  EXPECT_EQ(secondary.x, primary.x + primary.width + 8);
  EXPECT_EQ(secondary.y, primary.y);
  EXPECT_EQ(tertiary.x, 16);
  EXPECT_EQ(tertiary.y, primary.y + primary.height + 8);
  EXPECT_LT(tertiary.height, primary.height);
  EXPECT_EQ(banner_->card().get_allocated_height(), tertiary.y + tertiary.height + 14);
}

TEST_F(LinuxUpdateBannerTest, LeavesNoGapForHiddenWidgets) {
  ASSERT_TRUE(showBanner(downloading("")));
  const auto detail = inCard(*labels()[1]);
  EXPECT_EQ(inCard(*labels()[0]).y, 14);
  EXPECT_TRUE(waitUntil(
      [&] { return banner_->card().get_allocated_height() == detail.y + detail.height + 14; }));
}

TEST_F(LinuxUpdateBannerTest, HasTheLayoutsFonts) {
  ASSERT_TRUE(showBanner(offer()));
  const auto font = [](Gtk::Label* label) {
    return label->get_layout()->get_context()->get_font_description();
  };
  const auto pixels = [&](Gtk::Label* label) {
    const double resolution = label->get_screen()->get_resolution();
    return font(label).get_size() * resolution / (72.0 * PANGO_SCALE);
  };
  EXPECT_EQ(texts(), (std::vector<std::string>{offer().title, "×", offer().detail, "Update the app",
                                               "Remind Me in 1 Hour", "Don't Show Again"}));
  EXPECT_DOUBLE_EQ(pixels(labels()[0]), 14);
  EXPECT_EQ(font(labels()[0]).get_weight(), Pango::WEIGHT_SEMIBOLD);
  EXPECT_DOUBLE_EQ(pixels(labels()[1]), 18);
  EXPECT_DOUBLE_EQ(pixels(labels()[2]), 12);
  EXPECT_EQ(font(labels()[2]).get_weight(), Pango::WEIGHT_NORMAL);
  EXPECT_TRUE(labels()[2]->get_style_context()->has_class("dim-label"));
  EXPECT_LT(pixels(labels()[5]), pixels(labels()[3]));
}

TEST_F(LinuxUpdateBannerTest, ShowsTheContent) {
  ASSERT_TRUE(showBanner(offer()));
  EXPECT_EQ(button(Button::tertiary).get_tooltip_text(), "Not about this one");
  EXPECT_EQ(button(Button::close).get_tooltip_text(), "Close until tomorrow");
  EXPECT_EQ(button(Button::primary).get_tooltip_text(), "");

  banner_->setContent(downloading());
  EXPECT_THAT(texts(), ElementsAre("Downloading the update…", "You can keep working.", "Cancel"));
  auto content = offer();
  content.button(Button::secondary).enabled = false;
  content.button(Button::tertiary).toolTip.clear();
  banner_->setContent(content);
  EXPECT_TRUE(button(Button::secondary).get_mapped());
  EXPECT_FALSE(button(Button::secondary).is_sensitive());
  EXPECT_TRUE(button(Button::primary).is_sensitive());
  EXPECT_EQ(button(Button::tertiary).get_tooltip_text(), "");
}

TEST_F(LinuxUpdateBannerTest, ShowsTextsLiterallyWithKeyNames) {
  auto content = offer();
  content.title = "<b>1 < 2 & \"3\"</b>";
  content.detail = "Save your note (⌘⇧Space)";
  content.button(Button::primary).title = "_Update_ ⌘";
  ASSERT_TRUE(showBanner(content));
  EXPECT_EQ(texts()[0], content.title);
  EXPECT_EQ(texts()[2], "Save your note (Ctrl+Shift+Space)");
  EXPECT_EQ(texts()[3], "_Update_ Ctrl");
}

TEST_F(LinuxUpdateBannerTest, WrapsLongTextsWithoutWidening) {
  ASSERT_TRUE(showBanner(offer()));
  const int before = banner_->card().get_allocated_height();
  auto content = offer();
  content.title = "Доступна Навора 2026.11.21-предварительная-сборка-для-проверки+a1b2c3d4e5f6a7b8";
  content.detail =
      "Es konnte nicht geprüft werden, ob es ungespeicherte Eingaben gibt. Speichere die schnelle "
      "Notiz (Strg+Umschalt+Leertaste) oder warte, bis sie gesendet ist, und setze dann das Update "
      "fort. Donaudampfschifffahrtsgesellschaftskapitänsmützenabzeichenverleihungsurkundenmappe";
  banner_->setContent(content);
  ASSERT_TRUE(waitUntil([&] { return banner_->card().get_allocated_height() > before + 3 * 14; }));
  EXPECT_EQ(banner_->card().get_allocated_width(), 480);
  for (const Gtk::Label* label : labels())
    EXPECT_TRUE(isComplete(*label)) << label->get_text();
  EXPECT_EQ(inCard(button(Button::close)).x, 480 - 16 - 24);
  EXPECT_EQ(infoOf(window_->native()).content.width, 1100);
}

TEST_F(LinuxUpdateBannerTest, CutsVeryLongTexts) {
  auto content = offer();
  content.title = std::string(20'000, 'x');
  content.detail = std::string(20'000, 'y');
  ASSERT_TRUE(showBanner(content));
  EXPECT_EQ(banner_->card().get_allocated_width(), 480);
  EXPECT_LT(banner_->card().get_allocated_height(), 500);
  EXPECT_FALSE(isComplete(*labels()[0]));
  EXPECT_FALSE(isComplete(*labels()[2]));
}

TEST_F(LinuxUpdateBannerTest, KeepsItsButtonsInTheWindowWhateverTheLineBreaks) {
  ASSERT_TRUE(showBanner(offer()));
  ASSERT_TRUE(resizeTo(700));
  for (const std::string lineBreak : {"\n", "\r\n", "\r", "\n\n", "\u2028", "\u2029", " "}) {
    auto content = offer();
    content.title.clear();
    for (int line = 0; line < 300; ++line) {
      content.title += "Navora" + lineBreak;
      content.detail += "Finish your note before the update is installed." + lineBreak;
    }
    ASSERT_TRUE(showBanner(content));
    const auto overlay = onScreen(window_->overlay());
    for (const auto which : {Button::primary, Button::secondary, Button::tertiary}) {
      const auto place = onScreen(button(which));
      EXPECT_LE(place.y + place.height, overlay.y + overlay.height)
          << testing::PrintToString(lineBreak);
    }
    EXPECT_FALSE(isComplete(*labels()[0]));
    EXPECT_FALSE(isComplete(*labels()[2]));
    EXPECT_LE(labels()[2]->get_layout()->get_line_count(), Layout::detailLines);
  }
}

// Laying out the whole text would block the application for seconds.
TEST_F(LinuxUpdateBannerTest, LaysOutOnlyTheBeginningOfAnEndlessText) {
  for (const std::string piece : {"y", "é", "日", "\n"}) {
    auto content = offer();
    content.detail.clear();
    while (content.detail.size() < 1 << 20)
      content.detail += piece;
    ASSERT_TRUE(showBanner(content));
    const std::string shown = labels()[2]->get_text();
    EXPECT_LT(shown.size(), 40'000U);
    EXPECT_TRUE(isValidUtf8(shown));
    EXPECT_TRUE(shown.ends_with("…"));
    EXPECT_FALSE(isComplete(*labels()[2]));
  }
}

TEST_F(LinuxUpdateBannerTest, ShowsEachLineOfAShortText) {
  auto content = offer();
  content.detail = "First\nSecond\r\nThird";
  ASSERT_TRUE(showBanner(content));
  EXPECT_EQ(labels()[2]->get_layout()->get_line_count(), 3);
  EXPECT_TRUE(isComplete(*labels()[2]));
}

TEST_F(LinuxUpdateBannerTest, NarrowsInANarrowWindow) {
  auto content = offer();
  content.title = "Доступна Навора 2.0 с очень длинным названием выпуска";
  content.button(Button::primary).title = "Aktualisierung installieren";
  content.button(Button::secondary).title = "Um eine Stunde verschieben";
  ASSERT_TRUE(showBanner(content));
  int height = banner_->card().get_allocated_height();
  for (const int width : {516, 515, 400, 300}) {
    ASSERT_TRUE(resizeTo(width));
    const int expected = width - 36;
    ASSERT_TRUE(waitUntil([&] { return banner_->card().get_allocated_width() == expected; }))
        << width;
    EXPECT_EQ(onScreen(banner_->card()).x - onScreen(window_->overlay()).x, 18);
    EXPECT_GE(banner_->card().get_allocated_height(), height);
    height = banner_->card().get_allocated_height();
    for (Gtk::Label* label : labels()) {
      EXPECT_TRUE(isComplete(*label)) << width << ": " << label->get_text();
      const auto place = inCard(*label);
      EXPECT_GE(place.x, 16) << label->get_text();
      EXPECT_LE(place.x + place.width, expected - 8) << label->get_text();
      EXPECT_LE(place.y + place.height, height) << label->get_text();
    }
  }
  ASSERT_TRUE(resizeTo(900));
  EXPECT_TRUE(waitUntil([&] { return banner_->card().get_allocated_width() == 480; }));
}

TEST_F(LinuxUpdateBannerTest, IsOnTopOfEarlierOverlays) {
  Gtk::EventBox cover;
  cover.override_background_color(Gdk::RGBA("#00ff00"));
  cover.show();
  auto other = makeWindow();
  other->overlay().add_overlay(cover);
  LinuxUpdateBanner second;
  second.setDelegate(&delegateOfBanner_);
  second.attach(*other);
  second.setContent(offer());
  second.setHidden(false);
  ASSERT_TRUE(show(*other));
  ASSERT_TRUE(waitUntil([&] { return isLaidOut(second.card()); }));
  mouse_.click(onScreen(second.button(Button::primary).widget()).center());
  EXPECT_TRUE(waitUntil([&] { return delegateOfBanner_.presses.size() == 1; }));
}

TEST_F(LinuxUpdateBannerTest, MayOutliveItsWindow) {
  ASSERT_TRUE(showBanner(offer()));
  banner_->setProgress(UpdateBannerProgress::indeterminate());
  button(Button::primary).grab_focus();
  window_.reset();
  runPendingEvents();
  banner_->setContent(downloading());
  banner_->setHidden(true);
  banner_->setHidden(false);
  banner_->announce("text");
  EXPECT_FALSE(banner_->bar().isAnimating());
  banner_.reset();
}

TEST_F(LinuxUpdateBannerTest, LeavesItsWindowWhenDestroyed) {
  ASSERT_TRUE(showBanner(offer()));
  button(Button::primary).grab_focus();
  banner_.reset();
  runPendingEvents();
  EXPECT_EQ(window_->overlay().get_children().size(), 1U);
  EXPECT_EQ(window_->native().get_focus(), &page_);
  keyboard_.chord("F6");
  mouse_.click(onScreen(window_->overlay()).center());
  EXPECT_TRUE(waitUntil([this] { return clicksOnPage_ == 1; }));
}

}  // namespace
}  // namespace navora
