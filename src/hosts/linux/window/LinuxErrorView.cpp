#include "hosts/linux/window/LinuxErrorView.h"

#include <gtkmm/stylecontext.h>
#include <pangomm/attributes.h>
#include <pangomm/attrlist.h>

#include "hosts/linux/window/LinuxMainWindow.h"

namespace navora {
namespace {

// About the maximum width of the stack; labels measure it in characters.
constexpr int maximumLineCharacters = 60;

}  // namespace

LinuxErrorView::LinuxErrorView(LinuxMainWindow& window, const ErrorViewDescription& description)
    : window_(window),
      stack_(Gtk::ORIENTATION_VERTICAL, static_cast<int>(ErrorViewDescription::stackSpacing)) {
  background_.get_style_context()->add_class("background");
  stack_.set_halign(Gtk::ALIGN_CENTER);
  stack_.set_valign(Gtk::ALIGN_CENTER);
  addLabels(description);
  addButton(retry_, description.retryTitle, description.onRetry);
  addButton(browser_, description.browserTitle, description.onOpenInBrowser);
  retry_.set_can_default(true);
  // Return presses the default button, which would otherwise become the focused one.
  browser_.set_receives_default(false);
  retry_.get_style_context()->add_class("suggested-action");
  // Tab moves between the two buttons; it would lead on to other overlays of the window.
  background_.signal_focus().connect(
      [this](Gtk::DirectionType) {
        (retry_.has_focus() ? browser_ : retry_).grab_focus();
        return true;
      },
      false);

  background_.add(stack_);
  background_.show_all_children();
  background_.set_no_show_all(true);
  window_.overlay().add_overlay(background_);
}

LinuxErrorView::~LinuxErrorView() {
  setHidden(true);
}

void LinuxErrorView::addLabels(const ErrorViewDescription& description) {
  Pango::AttrList attributes;
  auto size = Pango::Attribute::create_attr_size_absolute(
      static_cast<int>(ErrorViewDescription::titleFontSize * PANGO_SCALE));
  auto weight = Pango::Attribute::create_attr_weight(Pango::WEIGHT_SEMIBOLD);
  attributes.insert(size);
  attributes.insert(weight);
  title_.set_text(description.title);
  title_.set_attributes(attributes);

  detail_.get_style_context()->add_class("dim-label");
  for (Gtk::Label* label : {&title_, &detail_}) {
    label->set_line_wrap(true);
    // An address without spaces may be wider than the window.
    label->set_line_wrap_mode(Pango::WRAP_WORD_CHAR);
    label->set_max_width_chars(maximumLineCharacters);
    label->set_justify(Gtk::JUSTIFY_CENTER);
    stack_.pack_start(*label, Gtk::PACK_SHRINK);
  }
  setDetail(description.detail);
}

void LinuxErrorView::addButton(Gtk::Button& button, const std::string& title,
                               const std::function<void()>& action) {
  button.set_label(title);
  button.set_halign(Gtk::ALIGN_CENTER);
  // GTK keeps the closure alive during the call, which may destroy this view.
  button.signal_clicked().connect([action] { action(); });
  stack_.pack_start(button, Gtk::PACK_SHRINK);
}

void LinuxErrorView::setDetail(const std::string& text) {
  detail_.set_text(text);
}

void LinuxErrorView::setHidden(bool hidden) {
  if (hidden == isHidden()) return;
  if (hidden) {
    background_.hide();
    window_.native().unset_default();
    window_.uncoverContent(retry_);
  } else {
    background_.show();
    // Keeps Return on the retry button wherever the focus moves.
    retry_.grab_default();
    window_.coverContent(retry_);
  }
}

bool LinuxErrorView::isHidden() const {
  return !background_.get_visible();
}

}  // namespace navora
