#include "hosts/linux/banner/BannerButton.h"

#include <utility>

#include <gtkmm/stylecontext.h>

namespace navora {

BannerButton::BannerButton(const char* styleClass, std::function<void()> pressed)
    : pressed_(std::move(pressed)) {
  if (styleClass != nullptr) button_.get_style_context()->add_class(styleClass);
  button_.set_focus_on_click(false);
  button_.set_no_show_all(true);
  // Wraps in a window that is too narrow for the title.
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

// Ignores a press that began under another title: the content may have changed before the release,
// and the user has not read the new title.
void BannerButton::clicked() {
  const auto titleAtPress = std::exchange(pressedTitle_, std::nullopt);
  if (titleAtPress && *titleAtPress != title_.get_text().raw()) return;
  if (!button_.get_mapped() || !button_.is_sensitive()) return;
  // A copy, because the call may destroy the banner with this button.
  const auto pressed = pressed_;
  pressed();
}

}  // namespace navora
