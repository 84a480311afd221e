#include "hosts/linux/banner/BannerButton.h"

#include <utility>

#include <gtkmm/stylecontext.h>

namespace navora {

BannerButton::BannerButton(const char* styleClass, std::function<void()> pressed)
    : pressed_(std::move(pressed)) {
  if (styleClass != nullptr) button_.get_style_context()->add_class(styleClass);
  button_.set_focus_on_click(false);
  button_.set_no_show_all(true);
  // In a window that is too narrow.
  title_.set_line_wrap(true);
  title_.set_line_wrap_mode(Pango::WRAP_WORD_CHAR);
  title_.set_justify(Gtk::JUSTIFY_CENTER);
  title_.show();
  button_.add(title_);
  button_.signal_button_press_event().connect(
      [this](GdkEventButton*) {
        rememberTitle();
        return false;
      },
      false);
  button_.signal_activate().connect([this] { rememberTitle(); });
  button_.signal_clicked().connect([this] { clicked(); });
}

void BannerButton::show(const UpdateBannerContent::Button& content) {
  title_.set_text(content.title);
  button_.set_tooltip_text(content.toolTip);
  button_.get_accessible()->set_name(
      content.accessibilityLabel.empty() ? content.title : content.accessibilityLabel);
  button_.set_sensitive(content.enabled);
  button_.set_visible(content.visible);
}

void BannerButton::rememberTitle() {
  pressedTitle_ = title_.get_text();
}

// Between the beginning of a press and its end the banner may have gone on to something that the
// user has not read yet.
void BannerButton::clicked() {
  const auto begun = std::exchange(pressedTitle_, std::nullopt);
  if (begun && *begun != title_.get_text().raw()) return;
  if (!button_.get_mapped() || !button_.is_sensitive()) return;
  // The press may end the banner and this button with it.
  const auto pressed = pressed_;
  pressed();
}

}  // namespace navora
