#include "hosts/linux/capture/LinuxCaptureEditor.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <gdk/gdkkeysyms.h>

#include "hosts/linux/capture/CaptureEditorStyle.h"
#include "hosts/linux/keyboard/KeyEvents.h"
#include "platform/CapturePanelView.h"

namespace navora {
namespace {

constexpr int textInset = static_cast<int>(CapturePanelLayout::editorInset);
// Aligns the text with the message below it.
constexpr int sideMargin = static_cast<int>(CapturePanelLayout::messageIndent);

// What the editor does with a key that GTK's text view does not know or handles differently: it
// would insert a tab for Shift+Tab as well. Its own key binding moves the focus with Ctrl+Tab.
enum class Command { none, undo, redo, focusBackward };

Command commandOf(const GdkEventKey& event) {
  const guint state = event.state & gtk_accelerator_get_default_mod_mask();
  // The key value of Shift+Tab depends on the layout.
  if (event.keyval == GDK_KEY_ISO_Left_Tab || event.keyval == GDK_KEY_Tab) {
    return state == GDK_SHIFT_MASK ? Command::focusBackward : Command::none;
  }
  const guint key = latinKeyFrom(event);
  if (key == GDK_KEY_z && state == GDK_CONTROL_MASK) return Command::undo;
  if (key == GDK_KEY_z && state == (GDK_CONTROL_MASK | GDK_SHIFT_MASK)) return Command::redo;
  if (key == GDK_KEY_y && state == GDK_CONTROL_MASK) return Command::redo;
  return Command::none;
}

void applyTo(Gtk::Widget& widget, const Glib::RefPtr<Gtk::CssProvider>& css) {
  widget.get_style_context()->add_provider(css, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace

LinuxCaptureEditor::LinuxCaptureEditor(CaptureEditorDelegate& delegate)
    : delegate_(delegate),
      buffer_(view_.get_buffer()),
      undo_(buffer_),
      heights_(buffer_),
      css_(Gtk::CssProvider::create()) {
  // With the policy "never", the view would ask for the width of its longest line, and the editor
  // would grow beyond the card.
  scroller_.set_policy(Gtk::POLICY_EXTERNAL, Gtk::POLICY_AUTOMATIC);
  scroller_.set_overlay_scrolling(true);
  scroller_.set_shadow_type(Gtk::SHADOW_NONE);
  scroller_.add(view_);
  applyTo(scroller_, css_);
  applyTo(*scroller_.get_vscrollbar(), css_);
  applyTo(view_, css_);

  view_.set_wrap_mode(Gtk::WRAP_WORD_CHAR);
  view_.set_top_margin(textInset);
  view_.set_bottom_margin(textInset);
  view_.set_left_margin(sideMargin);
  view_.set_right_margin(sideMargin);
  // GTK 3 shows its emoji chooser inside the window, which is not high enough for it.
  view_.set_input_hints(Gtk::INPUT_HINT_NO_EMOJI);
  connectBuffer();
  connectView();
  scroller_.show_all();
}

// Destroying a focused widget emits focus-out, which must not reach the delegate.
LinuxCaptureEditor::~LinuxCaptureEditor() {
  for (auto& connection : connections_)
    connection.disconnect();
}

// Reports one change per user action, even if it deletes and inserts.
void LinuxCaptureEditor::connectBuffer() {
  connections_.push_back(buffer_->signal_insert().connect(
      [this](const Gtk::TextIter&, const Glib::ustring& text, int) {
        if (isEcho(text)) g_signal_stop_emission_by_name(buffer_->gobj(), "insert-text");
      },
      false));
  connections_.push_back(buffer_->signal_changed().connect([this] { textChanged(); }));
  connections_.push_back(
      buffer_->signal_begin_user_action().connect([this] { inUserAction_ = true; }));
  connections_.push_back(buffer_->signal_end_user_action().connect([this] {
    inUserAction_ = false;
    if (std::exchange(changedInUserAction_, false)) textChanged();
  }));
}

void LinuxCaptureEditor::connectView() {
  const auto reportFocus = [this](bool focused) {
    return [this, focused](GdkEventFocus*) {
      if (!isEndingComposition_) delegate_.editorDidChangeFocus(focused);
      return false;
    };
  };
  // Before the input method learns of it: many discard their text then.
  connections_.push_back(view_.signal_focus_out_event().connect(
      [this](GdkEventFocus*) {
        if (!isEndingComposition_) commitComposition();
        return false;
      },
      false));
  connections_.push_back(view_.signal_button_press_event().connect(
      [this](GdkEventButton*) {
        ownCommit_.clear();
        return false;
      },
      false));
  connections_.push_back(view_.signal_drag_drop().connect(
      [this](const Glib::RefPtr<Gdk::DragContext>&, int, int, guint) {
        ownCommit_.clear();
        return false;
      },
      false));
  connections_.push_back(view_.signal_size_allocate().connect(
      [this](const Gtk::Allocation& area) { keepTextWidth(area.get_width()); }, false));
  connections_.push_back(view_.signal_focus_in_event().connect(reportFocus(true)));
  connections_.push_back(view_.signal_focus_out_event().connect(reportFocus(false)));
  connections_.push_back(view_.signal_draw().connect(
      [this](const Cairo::RefPtr<Cairo::Context>& context) { return drawPlaceholder(context); }));
  preedit_ = SignalConnection(view_.gobj(), "preedit-changed", G_CALLBACK(onPreeditChanged), this);
}

void LinuxCaptureEditor::textChanged() {
  if (settingText_) return;
  if (inUserAction_) {
    changedInUserAction_ = true;
  } else {
    delegate_.editorTextDidChange();
  }
}

void LinuxCaptureEditor::onPreeditChanged(GtkTextView*, const char* text, gpointer self) {
  auto& editor = *static_cast<LinuxCaptureEditor*>(self);
  editor.composition_ = stringFrom(text);
  editor.heights_.forget(editor.buffer_->get_iter_at_mark(editor.buffer_->get_insert()).get_line());
  editor.view_.queue_draw();
  // The view lays the new composition out after this signal.
  editor.layoutIsOutdated_ = true;
  editor.delegate_.editorCompositionDidChange();
  editor.layoutIsOutdated_ = false;
}

std::string LinuxCaptureEditor::text() const {
  return buffer_->get_text(true);
}

bool LinuxCaptureEditor::isEmpty() const {
  return buffer_->get_char_count() == 0;
}

void LinuxCaptureEditor::setText(const std::string& text) {
  settingText_ = true;
  endComposition();
  buffer_->set_text(text);
  settingText_ = false;
  undo_.forget();
}

void LinuxCaptureEditor::setEditable(bool editable) {
  view_.set_editable(editable);
}

void LinuxCaptureEditor::setStyle(const CaptureEditorStyle& style) {
  style_ = style;
  css_->load_from_data(cssFrom(style));
  font_ = fontFrom(style);
  setLineHeight(style.lineHeight);
}

// The font is set explicitly: a hidden widget applies a changed style sheet only when it is shown.
Glib::RefPtr<Pango::Layout> LinuxCaptureEditor::layoutOf(const Glib::ustring& text) {
  const auto layout = view_.create_pango_layout(text);
  layout->set_font_description(font_);
  return layout;
}

// Divides what the font's own line lacks between the space above and below it.
void LinuxCaptureEditor::setLineHeight(double lineHeight) {
  int height = 0;
  int width = 0;
  layoutOf("Ag")->get_pixel_size(width, height);
  lineExtra_ = std::max(0, static_cast<int>(std::lround(lineHeight)) - height);
  const int above = lineExtra_ / 2;
  view_.set_pixels_above_lines(above);
  view_.set_pixels_below_lines(lineExtra_ - above);
  view_.set_pixels_inside_wrap(lineExtra_);
  heights_.forgetAll();
}

void LinuxCaptureEditor::setPlaceholder(const std::string& text) {
  placeholder_ = text;
  view_.queue_draw();
}

void LinuxCaptureEditor::setAccessibilityLabel(const std::string& label) {
  view_.get_accessible()->set_name(label);
}

// Of the input methods, some commit their text when they lose the focus or are reset, some commit
// it later, and some discard it.
void LinuxCaptureEditor::commitComposition() {
  if (!isComposing()) return;
  const std::string composition = std::exchange(composition_, {});
  bool committed = false;
  sigc::connection insertion = buffer_->signal_insert().connect(
      [&](const Gtk::TextIter&, const Glib::ustring&, int) { committed = true; });
  endComposition();
  insertion.disconnect();
  if (!committed) insert(composition);
  ownCommit_ = composition;
}

// Takes the focus from the input method for a moment: ibus (seen in 1.5.27) keeps showing its text
// after a reset, and commits it again when it loses the focus.
void LinuxCaptureEditor::endComposition() {
  const bool hadFocus = view_.has_focus();
  isEndingComposition_ = true;
  sendFocusChange(false);
  view_.reset_im_context();
  if (hadFocus) sendFocusChange(true);
  isEndingComposition_ = false;
  composition_.clear();
}

void LinuxCaptureEditor::sendFocusChange(bool in) {
  const auto surface = view_.get_window(Gtk::TEXT_WINDOW_WIDGET);
  if (!surface) return;
  GdkEvent* event = gdk_event_new(GDK_FOCUS_CHANGE);
  event->focus_change.window = GDK_WINDOW(g_object_ref(surface->gobj()));
  event->focus_change.in = static_cast<gint16>(in);
  gtk_widget_event(GTK_WIDGET(view_.gobj()), event);
  gdk_event_free(event);
}

// The text that the input method commits after commitComposition() has inserted it.
bool LinuxCaptureEditor::isEcho(const Glib::ustring& text) const {
  return !settingText_ && !ownCommit_.empty() && text.raw() == ownCommit_;
}

// Replaces the selection, as a commit of the input method does.
void LinuxCaptureEditor::insert(const std::string& text) {
  const bool editable = view_.get_editable();
  buffer_->begin_user_action();
  buffer_->erase_selection(true, editable);
  buffer_->insert_interactive_at_cursor(text, editable);
  buffer_->end_user_action();
}

void LinuxCaptureEditor::makeFirstResponder() {
  view_.grab_focus();
}

void LinuxCaptureEditor::moveCaretToEnd() {
  buffer_->place_cursor(buffer_->end());
  view_.scroll_to(buffer_->get_insert());
}

bool LinuxCaptureEditor::inputMethodTakes(const GdkEventKey& event) {
  ownCommit_.clear();
  const std::uint16_t code = keyEventFrom(event).keyCode;
  const bool isForCore = code != KeyEvent::otherKey && code != KeyEvent::spaceKey;
  if (!view_.has_focus() || (!isForCore && commandOf(event) == Command::none)) return false;
  GdkEventKey copy = event;
  return gtk_text_view_im_context_filter_keypress(view_.gobj(), &copy) != FALSE;
}

bool LinuxCaptureEditor::handleKey(const GdkEventKey& event) {
  const Command command = commandOf(event);
  if (command == Command::none) return false;
  if (command == Command::focusBackward) {
    view_.get_toplevel()->child_focus(Gtk::DIR_TAB_BACKWARD);
    return true;
  }
  if (!view_.get_editable()) return true;
  command == Command::undo ? undo_.undo() : undo_.redo();
  view_.scroll_to(buffer_->get_insert());
  return true;
}

void LinuxCaptureEditor::setScrollBarSpace(int width) {
  scrollBarSpace_ = width;
}

// Lets a scroll bar that takes its own space, as the user may have chosen, take it from the margin,
// so that the lines do not break anew when it appears.
void LinuxCaptureEditor::keepTextWidth(int viewWidth) {
  const int scrollBarWidth = scroller_.get_allocated_width() - viewWidth;
  const int margin = std::max(0, sideMargin + scrollBarSpace_ - scrollBarWidth);
  if (margin != view_.get_right_margin()) view_.set_right_margin(margin);
}

int LinuxCaptureEditor::laidOutWidth() const {
  return view_.get_allocated_width() - view_.get_left_margin() - view_.get_right_margin();
}

int LinuxCaptureEditor::textWidth() const {
  const int width = scroller_.get_allocated_width();
  int wanted = 0;
  int height = 0;
  scroller_.get_size_request(wanted, height);
  return std::max(1, (wanted > 0 ? wanted : width) - 2 * sideMargin - scrollBarSpace_);
}

double LinuxCaptureEditor::textHeight(double enough) {
  if (std::exchange(heightsWidth_, textWidth()) != heightsWidth_) heights_.forgetAll();
  return heights_.sum(enough, [this](int line) { return lineHeight(line); });
}

// The view lays the text out itself and keeps the layout of the line that it was last asked about,
// which is the one being typed in: using it costs nothing. It has a layout only when it is shown.
int LinuxCaptureEditor::lineHeight(int line) {
  const auto begin = buffer_->get_iter_at_line(line);
  auto end = begin;
  if (!end.ends_line()) end.forward_to_line_end();
  const bool isLaidOut =
      !layoutIsOutdated_ && !isComposing() && view_.get_mapped() && laidOutWidth() == textWidth();
  return isLaidOut ? laidOutHeight(begin, end) : measuredHeight(begin, end);
}

int LinuxCaptureEditor::laidOutHeight(const Gtk::TextIter& begin, const Gtk::TextIter& end) {
  Gdk::Rectangle first;
  Gdk::Rectangle last;
  view_.get_iter_location(begin, first);
  view_.get_iter_location(end, last);
  return last.get_y() + last.get_height() - first.get_y() + lineExtra_;
}

int LinuxCaptureEditor::measuredHeight(const Gtk::TextIter& begin, const Gtk::TextIter& end) {
  Glib::ustring text = buffer_->get_text(begin, end, true);
  const auto caret = buffer_->get_iter_at_mark(buffer_->get_insert());
  if (isComposing() && caret.get_line() == begin.get_line()) {
    text.insert(static_cast<Glib::ustring::size_type>(caret.get_line_offset()), composition_);
  }
  const auto layout = layoutOf(text);
  layout->set_width(textWidth() * PANGO_SCALE);
  layout->set_wrap(Pango::WRAP_WORD_CHAR);
  int width = 0;
  int height = 0;
  layout->get_pixel_size(width, height);
  return height + layout->get_line_count() * lineExtra_;
}

bool LinuxCaptureEditor::drawPlaceholder(const Cairo::RefPtr<Cairo::Context>& context) {
  if (!isEmpty() || isComposing() || placeholder_.empty()) return false;
  Gdk::Rectangle caret;
  view_.get_iter_location(buffer_->begin(), caret);
  int x = 0;
  int y = 0;
  view_.buffer_to_window_coords(Gtk::TEXT_WINDOW_WIDGET, 0, caret.get_y(), x, y);
  const auto layout = layoutOf(placeholder_);
  layout->set_width(textWidth() * PANGO_SCALE);
  layout->set_ellipsize(Pango::ELLIPSIZE_END);
  const Color color = style_.placeholder;
  context->set_source_rgba(color.red, color.green, color.blue, color.alpha);
  context->move_to(sideMargin, y);
  layout->show_in_cairo_context(context);
  return false;
}

}  // namespace navora
