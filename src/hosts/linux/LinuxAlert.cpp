#include "hosts/linux/LinuxAlert.h"

#include <algorithm>
#include <utility>

#include <glibmm/main.h>
#include <gtkmm/box.h>

namespace navora {
namespace {

constexpr int lineCharacters = 60;
constexpr int maximumTextHeight = 360;

Gtk::ButtonsType buttonsFor(const AlertDescription& alert) {
  return alert.buttons.empty() ? Gtk::BUTTONS_OK : Gtk::BUTTONS_NONE;
}

}  // namespace

void LinuxAlert::run(Gtk::Window* parent, const AlertDescription& alert,
                     Dialogs::AlertCompletion completion) {
  auto* shown = new LinuxAlert(parent, alert, std::move(completion));
  shown->dialog_.signal_response().connect([shown](int response) { shown->answer(response); });
  shown->dialog_.present();
}

LinuxAlert::LinuxAlert(Gtk::Window* parent, const AlertDescription& alert,
                       Dialogs::AlertCompletion completion)
    : dialog_(alert.messageText, /*use_markup=*/false, Gtk::MESSAGE_OTHER, buttonsFor(alert),
              /*modal=*/true),
      buttonCount_(alert.buttons.size()),
      completion_(std::move(completion)) {
  if (parent != nullptr) dialog_.set_transient_for(*parent);
  dialog_.set_title(alert.messageText);
  addText(alert.informativeText);
  addButtons(alert.buttons);
  if (alert.textField) addTextField(*alert.textField);
}

// A page may say a lot: long texts scroll, so that the buttons stay on the screen.
void LinuxAlert::addText(const std::string& text) {
  text_.set_text(text);
  text_.set_line_wrap(true);
  text_.set_line_wrap_mode(Pango::WRAP_WORD_CHAR);
  text_.set_max_width_chars(lineCharacters);
  text_.set_width_chars(std::min<int>(lineCharacters, static_cast<int>(text_.get_text().size())));
  text_.set_selectable(true);
  text_.set_can_focus(false);
  scroller_.set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
  scroller_.set_propagate_natural_height(true);
  scroller_.set_max_content_height(maximumTextHeight);
  scroller_.add(text_);
  scroller_.show_all();
  dialog_.get_message_area()->pack_start(scroller_, Gtk::PACK_EXPAND_WIDGET);
}

void LinuxAlert::addButtons(const std::vector<std::string>& titles) {
  // The desktop puts the default button last.
  for (std::size_t index = titles.size(); index > 0; --index) {
    dialog_.add_button(titles[index - 1], static_cast<int>(index - 1));
  }
  dialog_.set_default_response(titles.empty() ? static_cast<int>(Gtk::RESPONSE_OK) : 0);
}

void LinuxAlert::addTextField(const AlertDescription::TextField& field) {
  entry_.set_text(field.text);
  entry_.set_size_request(static_cast<int>(field.size.width), static_cast<int>(field.size.height));
  entry_.set_activates_default(true);
  entry_.show();
  dialog_.get_message_area()->pack_start(entry_, Gtk::PACK_SHRINK);
  entry_.grab_focus();
}

void LinuxAlert::answer(int response) {
  const bool isButton = response >= 0 && static_cast<std::size_t>(response) < buttonCount_;
  const std::size_t last = buttonCount_ == 0 ? 0 : buttonCount_ - 1;
  const AlertResult result{isButton ? static_cast<std::size_t>(response) : last, entry_.get_text()};
  dialog_.hide();
  const auto completion = std::exchange(completion_, nullptr);
  // Not within its own signal.
  Glib::signal_idle().connect_once([this] { delete this; });
  if (completion) completion(result);
}

}  // namespace navora
