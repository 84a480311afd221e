#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtkmm/button.h>
#include <gtkmm/eventbox.h>
#include <gtkmm/label.h>

#include "hosts/linux/window/LinuxErrorView.h"
#include "linux/window/WindowTest.h"

namespace navora {
namespace {

using testing::ElementsAre;

// A window whose content has a single colour and counts clicks.
class LinuxErrorViewTest : public WindowTest {
 protected:
  void SetUp() override {
    page_.override_background_color(Gdk::RGBA("#ff00ff"));
    page_.add_events(Gdk::BUTTON_PRESS_MASK);
    page_.signal_button_press_event().connect([this](GdkEventButton*) {
      ++clicksOnPage_;
      return true;
    });
    page_.show();
    window_->overlay().add(page_);
    ASSERT_TRUE(show(*window_));
  }

  ErrorViewDescription texts() {
    return {"Cannot load",     "The server does not answer", "Try again",
            "Open in browser", [this] { ++retries_; },       [this] { ++opened_; }};
  }
  void showView() {
    view_ = std::make_unique<LinuxErrorView>(*window_, texts());
    view_->setHidden(false);
    ASSERT_TRUE(waitUntil([this] { return isLaidOut(*button("Try again")); }));
  }
  Gtk::Button* button(const std::string& title) {
    const auto buttons = visibleWidgetsOf<Gtk::Button>(window_->native());
    const auto found = std::ranges::find_if(
        buttons, [&](const Gtk::Button* candidate) { return candidate->get_label() == title; });
    return found == buttons.end() ? nullptr : *found;
  }
  std::vector<std::string> labels() {
    std::vector<std::string> shown;
    for (const Gtk::Label* label : visibleWidgetsOf<Gtk::Label>(window_->native()))
      shown.push_back(label->get_text());
    return shown;
  }
  std::size_t pixelsOfPage() {
    return display_.screenshot(onScreen(window_->overlay())).pixelsLike({255, 0, 255}, 40);
  }

  std::unique_ptr<LinuxMainWindow> window_ = makeWindow();
  Gtk::EventBox page_;
  int clicksOnPage_ = 0;
  int retries_ = 0;
  int opened_ = 0;
  std::unique_ptr<LinuxErrorView> view_;
};

TEST_F(LinuxErrorViewTest, IsHiddenAtFirst) {
  view_ = std::make_unique<LinuxErrorView>(*window_, texts());
  runPendingEvents();
  EXPECT_TRUE(view_->isHidden());
  EXPECT_THAT(labels(), ElementsAre());
}

TEST_F(LinuxErrorViewTest, CoversThePageCompletely) {
  ASSERT_TRUE(waitUntil([this] { return pixelsOfPage() > 0; }));
  showView();
  EXPECT_FALSE(view_->isHidden());
  EXPECT_TRUE(waitUntil([this] { return pixelsOfPage() == 0; }));
  view_->setHidden(true);
  EXPECT_TRUE(view_->isHidden());
  EXPECT_TRUE(waitUntil([this] { return pixelsOfPage() > 0; }));
}

TEST_F(LinuxErrorViewTest, ShowsItsTexts) {
  showView();
  EXPECT_THAT(labels(), ElementsAre("Cannot load", "The server does not answer", "Try again",
                                    "Open in browser"));
}

TEST_F(LinuxErrorViewTest, ShowsDetailsLiterally) {
  showView();
  view_->setDetail("<b>5 < 6 & \"7\"</b>");
  EXPECT_EQ(labels()[1], "<b>5 < 6 & \"7\"</b>");
  EXPECT_TRUE(waitUntil([this] { return pixelsOfPage() == 0; }));
}

TEST_F(LinuxErrorViewTest, LongDetailsDoNotWidenTheWindow) {
  showView();
  const auto* detail = visibleWidgetsOf<Gtk::Label>(window_->native())[1];
  ASSERT_TRUE(waitUntil([&] { return detail->get_allocated_height() > 1; }));
  const int before = detail->get_allocated_height();
  view_->setDetail(std::string(2000, 'x') + " " + std::string(200, 'y'));
  EXPECT_TRUE(waitUntil([&] { return detail->get_allocated_height() > 10 * before; }));
  EXPECT_LE(detail->get_allocated_width(), 1100);
  EXPECT_EQ(infoOf(window_->native()).content.width, 1100);
}

TEST_F(LinuxErrorViewTest, ButtonsCallTheirActions) {
  showView();
  button("Try again")->clicked();
  EXPECT_EQ(retries_, 1);
  button("Open in browser")->clicked();
  EXPECT_EQ(opened_, 1);
  EXPECT_EQ(retries_, 1);
}

TEST_F(LinuxErrorViewTest, ReturnRetries) {
  showView();
  keyboard_.chord("Return");
  EXPECT_TRUE(waitUntil([this] { return retries_ == 1; }));
  EXPECT_EQ(opened_, 0);
}

TEST_F(LinuxErrorViewTest, ReturnRetriesWhereverTheFocusIs) {
  showView();
  button("Open in browser")->grab_focus();
  keyboard_.chord("Return");
  EXPECT_TRUE(waitUntil([this] { return retries_ + opened_ > 0; }));
  EXPECT_EQ(retries_, 1);
  keyboard_.chord("space");
  EXPECT_TRUE(waitUntil([this] { return opened_ == 1; }));
}

TEST_F(LinuxErrorViewTest, KeepsClicksFromThePage) {
  showView();
  const auto area = onScreen(window_->overlay());
  mouse_.click({area.x + 20, area.y + 20});
  mouse_.click(onScreen(*button("Try again")).center());
  ASSERT_TRUE(waitUntil([this] { return retries_ == 1; }));
  EXPECT_EQ(clicksOnPage_, 0);
}

TEST_F(LinuxErrorViewTest, ALaterViewIsOnTop) {
  showView();
  auto second = texts();
  second.title = "Second";
  second.onRetry = [this] { opened_ += 10; };
  LinuxErrorView above(*window_, second);
  above.setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return pixelsOfPage() == 0; }));
  keyboard_.chord("Return");
  EXPECT_TRUE(waitUntil([this] { return opened_ == 10; }));
  EXPECT_EQ(retries_, 0);
}

TEST_F(LinuxErrorViewTest, LeavesTheWindowWhenDestroyed) {
  const std::size_t before = window_->overlay().get_children().size();
  showView();
  view_.reset();
  EXPECT_EQ(window_->overlay().get_children().size(), before);
  EXPECT_THAT(labels(), ElementsAre());
  EXPECT_TRUE(waitUntil([this] { return pixelsOfPage() > 0; }));
  EXPECT_EQ(gtk_window_get_default_widget(window_->native().gobj()), nullptr);
}

TEST_F(LinuxErrorViewTest, AnActionMayDestroyTheView) {
  auto description = texts();
  description.onRetry = [this] {
    view_.reset();
    ++retries_;
  };
  view_ = std::make_unique<LinuxErrorView>(*window_, description);
  view_->setHidden(false);
  ASSERT_TRUE(waitUntil([this] { return isLaidOut(*button("Try again")); }));
  keyboard_.chord("Return");
  EXPECT_TRUE(waitUntil([this] { return retries_ == 1; }));
  EXPECT_EQ(view_, nullptr);
}

}  // namespace
}  // namespace navora
