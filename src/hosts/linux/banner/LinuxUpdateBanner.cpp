#include "hosts/linux/banner/LinuxUpdateBanner.h"

#include <algorithm>
#include <utility>

#include <atkmm/relationset.h>
#include <gdk/gdkkeysyms.h>
#include <gdkmm/screen.h>
#include <gtkmm/stylecontext.h>

#include "hosts/linux/banner/BannerStyle.h"
#include "hosts/linux/keyboard/ModifierNames.h"
#include "hosts/linux/window/LinuxMainWindow.h"
#include "support/Text.h"

namespace navora {
namespace {

using Layout = UpdateBannerLayout;

constexpr int spacing = static_cast<int>(Layout::spacing);
// A longer title is cut with an ellipsis.
constexpr int titleLines = 4;

void setUpText(Gtk::Label& label, const char* styleClass, int lines) {
  label.get_style_context()->add_class(styleClass);
  label.set_xalign(0);
  label.set_line_wrap(true);
  label.set_line_wrap_mode(Pango::WRAP_WORD_CHAR);
  label.set_ellipsize(Pango::ELLIPSIZE_END);
  label.set_lines(lines);
  label.set_no_show_all(true);
}

// Returns the beginning of a text that is longer than a label's lines can show. To lay out a
// megabyte would block the application for seconds.
std::string beginningOf(const std::string& text) {
  constexpr std::size_t maximumBytes = 8000;
  if (text.size() <= maximumBytes) return text;
  std::size_t end = maximumBytes;
  while ((static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
    --end;
  return text.substr(0, end) + "…";
}

// Pango limits the lines of each paragraph. A text that is one paragraph, whose lines are divided
// by the line separator, has no more than the label's lines. The space stands between the last one
// and what is cut.
std::string asOneParagraph(std::string text) {
  for (const char* paragraphBreak : {"\r\n", "\n", "\r", "\u2029"})
    text = replaceAll(text, paragraphBreak, " \u2028");
  return text;
}

void showText(Gtk::Label& label, const std::string& text) {
  label.set_text(asOneParagraph(withModifierNames(beginningOf(text))));
  label.set_visible(!text.empty());
}

UpdateBannerContent::Button forThisDesktop(UpdateBannerContent::Button button) {
  for (std::string* text : {&button.title, &button.toolTip, &button.accessibilityLabel})
    *text = withModifierNames(*text);
  return button;
}

}  // namespace

LinuxUpdateBanner::LinuxUpdateBanner()
    : heading_(Gtk::ORIENTATION_HORIZONTAL, spacing),
      close_(BannerStyle::close, [this] { pressed(UpdateBannerButton::close); }),
      row_(Gtk::ORIENTATION_HORIZONTAL, spacing),
      primary_(BannerStyle::primary, [this] { pressed(UpdateBannerButton::primary); }),
      secondary_(nullptr, [this] { pressed(UpdateBannerButton::secondary); }),
      tertiary_(BannerStyle::tertiary, [this] { pressed(UpdateBannerButton::tertiary); }) {
  g_weak_ref_init(&focusOutside_, nullptr);
  css_->load_from_data(BannerStyle::css());
  Gtk::StyleContext::add_provider_for_screen(Gdk::Screen::get_default(), css_,
                                             GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  build();
  setUpAccessibility();
  setContent({});
  setProgress({});
}

LinuxUpdateBanner::~LinuxUpdateBanner() {
  setHidden(true);
  for (auto& connection : connections_)
    connection.disconnect();
  Gtk::StyleContext::remove_provider_for_screen(Gdk::Screen::get_default(), css_);
  g_weak_ref_clear(&focusOutside_);
}

void LinuxUpdateBanner::build() {
  setUpText(title_, BannerStyle::title, titleLines);
  setUpText(detail_, BannerStyle::detail, Layout::detailLines);
  detail_.get_style_context()->add_class("dim-label");
  close_.widget().set_valign(Gtk::ALIGN_CENTER);
  heading_.pack_start(title_, Gtk::PACK_EXPAND_WIDGET);
  heading_.pack_end(close_.widget(), Gtk::PACK_SHRINK);
  row_.set_halign(Gtk::ALIGN_START);
  row_.pack_start(primary_.widget(), Gtk::PACK_SHRINK);
  row_.pack_start(secondary_.widget(), Gtk::PACK_SHRINK);
  tertiary_.widget().set_halign(Gtk::ALIGN_START);

  for (Gtk::Widget* widget : std::initializer_list<Gtk::Widget*>{
           &heading_, &detail_, &bar_.widget(), &row_, &tertiary_.widget()})
    card_.pack_start(*widget, Gtk::PACK_SHRINK);
  heading_.show();
  card_.set_no_show_all(true);
  card_.signal_size_allocate().connect([this](Gtk::Allocation&) { redrawPage(); });
  card_.signal_key_press_event().connect([this](GdkEventKey* event) { return keyPressed(*event); });
}

void LinuxUpdateBanner::setUpAccessibility() {
  // Screen readers read a notification aloud when it appears.
  card_.get_accessible()->set_role(Atk::ROLE_NOTIFICATION);
  title_.get_accessible()->set_role(Atk::ROLE_HEADING);
  atk_object_add_relationship(gtk_widget_get_accessible(GTK_WIDGET(bar_.widget().gobj())),
                              ATK_RELATION_LABELLED_BY,
                              gtk_widget_get_accessible(GTK_WIDGET(title_.gobj())));
}

void LinuxUpdateBanner::attach(MainWindow& window) {
  window_ = &static_cast<LinuxMainWindow&>(window);
  windowDestroyed_ = SignalConnection(window_->native().gobj(), "destroy",
                                      G_CALLBACK(&LinuxUpdateBanner::onWindowDestroyed), this);
  connectWindow();
  window_->overlay().add_overlay(card_);
}

void LinuxUpdateBanner::connectWindow() {
  Gtk::Window& native = window_->native();
  connections_ = {
      window_->overlay().signal_get_child_position().connect(
          [this](Gtk::Widget* child, Gdk::Rectangle& position) {
            return child != nullptr && place(*child, position);
          },
          false),
      native.signal_key_press_event().connect(
          [this](GdkEventKey* event) { return windowKeyPressed(*event); }, false),
      native.signal_set_focus().connect([this](Gtk::Widget* focus) { rememberFocus(focus); })};
}

void LinuxUpdateBanner::onWindowDestroyed(GtkWidget*, gpointer self) {
  static_cast<LinuxUpdateBanner*>(self)->window_ = nullptr;
}

// GtkOverlay would measure the height for the full width, which is not enough for texts that wrap
// in a narrow window.
bool LinuxUpdateBanner::place(const Gtk::Widget& child, Gdk::Rectangle& place) {
  if (&child != &card_) return false;
  const int available = window_->overlay().get_allocated_width() -
                        static_cast<int>(Layout::minimumLeadingDistance + Layout::trailingDistance);
  int minimum = 0;
  int natural = 0;
  card_.get_preferred_width(minimum, natural);
  const int width = std::max(minimum, std::min(static_cast<int>(Layout::width), available));
  int height = 0;
  card_.get_preferred_height_for_width(width, minimum, height);
  const int trailing = static_cast<int>(Layout::trailingDistance);
  place = {window_->overlay().get_allocated_width() - trailing - width,
           static_cast<int>(Layout::topDistance), width, height};
  return true;
}

void LinuxUpdateBanner::setHidden(bool hidden) {
  if (hidden == isHidden()) return;
  const bool hadFocus = card_.containsFocus();
  card_.set_visible(!hidden);
  redrawPage();
  if (hidden && hadFocus) restoreFocus();
}

// The page below must be repainted where the card was and outside its corners.
void LinuxUpdateBanner::redrawPage() {
  if (window_ != nullptr) window_->redrawContent();
}

bool LinuxUpdateBanner::isHidden() const {
  return !card_.get_visible();
}

void LinuxUpdateBanner::setContent(const UpdateBannerContent& content) {
  const bool hadFocus = card_.containsFocus();
  showText(title_, content.title);
  showText(detail_, content.detail);
  for (const auto which : {UpdateBannerButton::primary, UpdateBannerButton::secondary,
                           UpdateBannerButton::tertiary, UpdateBannerButton::close})
    button(which).show(forThisDesktop(content.button(which)));
  // An empty row would leave a gap.
  row_.set_visible(primary_.widget().get_visible() || secondary_.widget().get_visible());
  card_.get_accessible()->set_name(withModifierNames(content.accessibilityLabel));
  if (hadFocus && !card_.containsFocus()) card_.holdFocus();
}

void LinuxUpdateBanner::setProgress(UpdateBannerProgress progress) {
  bar_.show(progress);
}

void LinuxUpdateBanner::announce(const std::string& text) {
  AtkObject* accessible = gtk_widget_get_accessible(GTK_WIDGET(card_.gobj()));
  const std::string shown = withModifierNames(text);
  // ATK 2.50 deprecates "announcement" for "notification", which has a politeness argument.
  if (g_signal_lookup("notification", ATK_TYPE_OBJECT) != 0) {
    constexpr int polite = 1;
    g_signal_emit_by_name(accessible, "notification", shown.c_str(), polite);
  } else if (g_signal_lookup("announcement", ATK_TYPE_OBJECT) != 0) {
    g_signal_emit_by_name(accessible, "announcement", shown.c_str());
  }
}

BannerButton& LinuxUpdateBanner::button(UpdateBannerButton which) {
  switch (which) {
    case UpdateBannerButton::primary:
      return primary_;
    case UpdateBannerButton::secondary:
      return secondary_;
    case UpdateBannerButton::tertiary:
      return tertiary_;
    case UpdateBannerButton::close:
      break;
  }
  return close_;
}

void LinuxUpdateBanner::pressed(UpdateBannerButton which) {
  if (delegate_ != nullptr) delegate_->bannerButtonPressed(which);
}

// Escape presses the close button, if the content has one.
bool LinuxUpdateBanner::keyPressed(const GdkEventKey& event) {
  if (event.keyval != GDK_KEY_Escape || !close_.widget().get_visible()) return false;
  if (close_.widget().is_sensitive()) close_.widget().clicked();
  return true;
}

// F6 moves between page and banner, because a page may handle Tab itself, as editors do.
bool LinuxUpdateBanner::windowKeyPressed(const GdkEventKey& event) {
  const auto modifiers = event.state & gtk_accelerator_get_default_mod_mask();
  if (event.keyval != GDK_KEY_F6 || modifiers != 0 || isHidden()) return false;
  if (card_.containsFocus()) {
    restoreFocus();
    return true;
  }
  return card_.focusFirstButton();
}

void LinuxUpdateBanner::rememberFocus(Gtk::Widget* focus) {
  if (focus == nullptr || focus == &card_ || focus->is_ancestor(card_)) return;
  g_weak_ref_set(&focusOutside_, focus->gobj());
}

void LinuxUpdateBanner::restoreFocus() {
  if (window_ == nullptr) return;
  const auto before =
      GObjectPtr<GtkWidget>::adopt(static_cast<GtkWidget*>(g_weak_ref_get(&focusOutside_)));
  if (before && gtk_widget_get_mapped(before.get()) != FALSE) {
    gtk_widget_grab_focus(before.get());
  } else {
    window_->focusContent();
  }
}

}  // namespace navora
