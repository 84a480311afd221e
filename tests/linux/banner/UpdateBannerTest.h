#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtkmm/eventbox.h>

#include "hosts/linux/banner/LinuxUpdateBanner.h"
#include "linux/window/WindowTest.h"

namespace navora {

// Records the pressed buttons.
class RecordingBannerDelegate final : public UpdateBannerViewDelegate {
 public:
  void bannerButtonPressed(UpdateBannerButton button) override {
    presses.push_back(button);
    if (onPress) onPress(button);
  }
  std::vector<UpdateBannerButton> presses;
  std::function<void(UpdateBannerButton)> onPress;
};

// A banner over a focused page of a single colour that counts clicks.
class UpdateBannerTest : public WindowTest {
 protected:
  using Button = UpdateBannerButton;

  static constexpr driver::PixelColor pageColor{255, 0, 255};

  void SetUp() override {
    page_.override_background_color(Gdk::RGBA("#ff00ff"));
    page_.add_events(Gdk::BUTTON_PRESS_MASK | Gdk::SCROLL_MASK);
    page_.set_can_focus(true);
    page_.signal_button_press_event().connect([this](GdkEventButton*) {
      ++clicksOnPage_;
      return true;
    });
    page_.signal_scroll_event().connect([this](GdkEventScroll*) {
      ++scrollsOnPage_;
      return true;
    });
    page_.show();
    window_->overlay().add(page_);
    banner_->setDelegate(&delegateOfBanner_);
    banner_->attach(*window_);
    ASSERT_TRUE(show(*window_));
    page_.grab_focus();
  }
  void TearDown() override { colorScheme_.setAppearance(WindowAppearance::system); }

  static UpdateBannerContent::Button titled(std::string title) {
    return {.title = std::move(title), .visible = true, .toolTip = {}, .accessibilityLabel = {}};
  }
  // Returns content with all four buttons.
  static UpdateBannerContent offer() {
    UpdateBannerContent content;
    content.title = "Navora 2.0 is available";
    content.detail = "The update will be installed and the app will restart.";
    content.button(Button::primary) = titled("Update the app");
    content.button(Button::secondary) = titled("Remind Me in 1 Hour");
    content.button(Button::tertiary) = {"Don't Show Again", true, true, "Not about this one", ""};
    content.button(Button::close) = {"×", true, true, "Close until tomorrow",
                                     "Close until tomorrow"};
    content.accessibilityLabel = "Navora update";
    return content;
  }
  // Returns content with one button, or none.
  static UpdateBannerContent downloading(const std::string& cancel = "Cancel") {
    UpdateBannerContent content;
    content.title = "Downloading the update…";
    content.detail = "You can keep working.";
    if (!cancel.empty()) content.button(Button::secondary) = titled(cancel);
    content.accessibilityLabel = "Navora update";
    return content;
  }
  static UpdateBannerContent disabled(UpdateBannerContent content) {
    for (auto& button : content.buttons)
      button.enabled = false;
    return content;
  }

  // Shows the content, which must differ from the current one if the banner is visible, and waits
  // until it is laid out.
  testing::AssertionResult showBanner(const UpdateBannerContent& content) {
    bool placed = false;
    sigc::connection placing = banner_->card().signal_size_allocate().connect(
        [&](Gtk::Allocation& place) { placed = place.get_width() > 1; });
    banner_->setContent(content);
    banner_->setHidden(false);
    const auto result = waitUntil([&] { return placed && isLaidOut(banner_->card()); });
    placing.disconnect();
    return result;
  }
  Gtk::Button& button(Button which) { return banner_->button(which).widget(); }
  std::vector<Gtk::Label*> labels() { return visibleWidgetsOf<Gtk::Label>(banner_->card()); }
  std::vector<std::string> texts() {
    std::vector<std::string> shown;
    for (const Gtk::Label* label : labels())
      shown.push_back(label->get_text());
    return shown;
  }
  // Returns the position of a widget relative to the card.
  driver::Rectangle inCard(Gtk::Widget& widget) {
    const auto card = onScreen(banner_->card());
    auto place = onScreen(widget);
    place.x -= card.x;
    place.y -= card.y;
    return place;
  }
  driver::Screenshot shotOfCard() { return display_.screenshot(onScreen(banner_->card())); }

  std::unique_ptr<LinuxMainWindow> window_ = makeWindow();
  Gtk::EventBox page_;
  int clicksOnPage_ = 0;
  int scrollsOnPage_ = 0;
  RecordingBannerDelegate delegateOfBanner_;
  std::unique_ptr<LinuxUpdateBanner> banner_ = std::make_unique<LinuxUpdateBanner>();
};

}  // namespace navora
