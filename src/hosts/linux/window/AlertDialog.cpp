#include "hosts/linux/window/AlertDialog.h"

#include <algorithm>
#include <utility>

#include <glibmm/main.h>
#include <gtkmm/box.h>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

constexpr int lineCharacters = 60;
constexpr int maximumTextHeight = 360;
// A label lays out its whole text repeatedly, which for the longest texts from pages would block
// the application for a minute. A text view lays it out once, beginning with the visible part.
constexpr std::size_t maximumLabelBytes = 2000;
constexpr int longTextWidth = 480;

// Laying out a line takes time quadratic in the length of its words. A line is broken at the first
// space after this many bytes, or anywhere after twice as many.
constexpr std::size_t wantedLineBytes = 2000;

std::string withShortLines(const std::string& text) {
  std::string result;
  std::size_t lineBytes = 0;
  for (const char byte : text) {
    const bool startsCharacter = (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    const std::size_t limit = byte == ' ' ? wantedLineBytes : 2 * wantedLineBytes;
    if (startsCharacter && byte != '\n' && lineBytes >= limit) {
      result += '\n';
      lineBytes = 0;
    }
    result += byte;
    lineBytes = byte == '\n' ? 0 : lineBytes + 1;
  }
  return result;
}

}  // namespace

void AlertDialog::run(Gtk::Window* parent, const AlertDescription& alert,
                      Dialogs::AlertCompletion completion) {
  auto* shown = new AlertDialog(parent, alert, std::move(completion));
  shown->dialog_.signal_response().connect([shown](int response) { shown->answer(response); });
  shown->dialog_.present();
}

AlertDialog::AlertDialog(Gtk::Window* parent, const AlertDescription& alert,
                         Dialogs::AlertCompletion completion)
    : dialog_(alert.messageText, /*use_markup=*/false, Gtk::MESSAGE_OTHER, Gtk::BUTTONS_NONE,
              /*modal=*/true),
      buttonCount_(alert.buttons.size()),
      completion_(std::move(completion)) {
  if (parent != nullptr) dialog_.set_transient_for(*parent);
  dialog_.set_title(alert.messageText);
  addText(alert.informativeText);
  addButtons(alert.buttons);
  if (alert.textField) addTextField(*alert.textField);
}

// Long texts scroll, so that the buttons stay on the screen.
void AlertDialog::addText(const std::string& text) {
  scroller_.set_policy(Gtk::POLICY_NEVER, Gtk::POLICY_AUTOMATIC);
  if (text.size() > maximumLabelBytes) {
    addLongText(text);
  } else {
    addShortText(text);
  }
  scroller_.show_all();
  dialog_.get_message_area()->pack_start(scroller_, Gtk::PACK_EXPAND_WIDGET);
}

void AlertDialog::addShortText(const std::string& text) {
  text_.set_text(text);
  text_.set_line_wrap(true);
  text_.set_line_wrap_mode(Pango::WRAP_WORD_CHAR);
  text_.set_max_width_chars(lineCharacters);
  text_.set_width_chars(std::min<int>(lineCharacters, static_cast<int>(text_.get_text().size())));
  text_.set_selectable(true);
  text_.set_can_focus(false);
  scroller_.set_propagate_natural_height(true);
  scroller_.set_max_content_height(maximumTextHeight);
  scroller_.add(text_);
}

void AlertDialog::addLongText(const std::string& text) {
  longText_.get_buffer()->set_text(withShortLines(text));
  longText_.set_editable(false);
  longText_.set_can_focus(false);
  longText_.set_wrap_mode(Gtk::WRAP_WORD_CHAR);
  scroller_.set_size_request(longTextWidth, maximumTextHeight);
  scroller_.add(longText_);
}

void AlertDialog::addButtons(const std::vector<std::string>& titles) {
  // The default button comes first in `titles` and last on the desktop.
  for (std::size_t index = titles.size(); index > 0; --index) {
    dialog_.add_button(titles[index - 1], static_cast<int>(index - 1));
  }
  // The toolkit's own label would be in the system's language, not the interface's.
  if (titles.empty()) dialog_.add_button(L("ОК"), Gtk::RESPONSE_OK);
  dialog_.set_default_response(titles.empty() ? static_cast<int>(Gtk::RESPONSE_OK) : 0);
}

void AlertDialog::addTextField(const AlertDescription::TextField& field) {
  entry_.set_text(field.text);
  entry_.set_size_request(static_cast<int>(field.size.width), static_cast<int>(field.size.height));
  entry_.set_activates_default(true);
  entry_.show();
  dialog_.get_message_area()->pack_start(entry_, Gtk::PACK_SHRINK);
  entry_.grab_focus();
}

void AlertDialog::answer(int response) {
  // Two requests to close the window that arrive together are both answered.
  if (std::exchange(answered_, true)) return;
  const bool isButton = response >= 0 && static_cast<std::size_t>(response) < buttonCount_;
  const std::size_t last = buttonCount_ == 0 ? 0 : buttonCount_ - 1;
  const AlertResult result{isButton ? static_cast<std::size_t>(response) : last, entry_.get_text()};
  dialog_.hide();
  const auto completion = std::exchange(completion_, nullptr);
  // The dialog must not be deleted within the emission of its own signal.
  Glib::signal_idle().connect_once([this] { delete this; });
  if (completion) completion(result);
}

}  // namespace navora
