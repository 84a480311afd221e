#include "hosts/linux/capture/LinuxCapturePanel.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <gdkmm/display.h>
#include <gdkmm/monitor.h>
#include <gdkmm/screen.h>
#include <gtkmm/cssprovider.h>

#include "hosts/linux/keyboard/KeyEvents.h"
#include "hosts/linux/keyboard/ModifierNames.h"
#include "hosts/linux/window/ColorScheme.h"
#include "hosts/linux/workspace/ActiveWindow.h"
#include "hosts/linux/workspace/ScreenGeometry.h"

#include <gdk/gdkx.h>

namespace navora {
namespace {

// From the right edge of the card.
constexpr int scrollBarDistance = 2;

int pixels(double length) {
  return static_cast<int>(std::lround(length));
}

Pango::AttrList messageAttributes(Color color) {
  const auto channel = [](double value) {
    return static_cast<guint16>(std::lround(value * 65535));
  };
  Pango::AttrList attributes;
  auto size = Pango::Attribute::create_attr_size_absolute(
      static_cast<int>(CapturePanelView::messageFontSize * PANGO_SCALE));
  auto ink = Pango::Attribute::create_attr_foreground(channel(color.red), channel(color.green),
                                                      channel(color.blue));
  attributes.insert(size);
  attributes.insert(ink);
  // pangomm has no wrapper for this attribute.
  pango_attr_list_insert(attributes.gobj(), pango_attr_foreground_alpha_new(channel(color.alpha)));
  return attributes;
}

}  // namespace

LinuxCapturePanel::LinuxCapturePanel(Size contentSize, CapturePanelDelegate& delegate,
                                     ColorScheme& colorScheme)
    : delegate_(delegate),
      colorScheme_(colorScheme),
      frame_{0, 0, pixels(contentSize.width), pixels(contentSize.height)},
      card_(window_, delegate),
      editor_(delegate),
      button_(delegate),
      focusWatch_(window_, [&delegate] { delegate.panelDidResignKey(); }) {
  makeFloating();
  useAlphaVisual();
  setUpMessage();
  content_.add(editor_.widget());
  content_.add(messageClip_);
  content_.add(button_.widget());
  window_.add(content_);
  content_.show();
  placeChildren();
  connectEvents();
  gtk_widget_realize(GTK_WIDGET(window_.gobj()));
  connections_.push_back(colorScheme_.systemChanged.connect(
      [this](bool dark) { delegate_.systemAppearanceDidChange(dark); }));
}

LinuxCapturePanel::~LinuxCapturePanel() {
  for (auto& connection : connections_)
    connection.disconnect();
}

void LinuxCapturePanel::makeFloating() {
  window_.set_decorated(false);
  window_.set_resizable(false);
  window_.set_keep_above(true);
  window_.stick();
  window_.set_type_hint(Gdk::WINDOW_TYPE_HINT_UTILITY);
  window_.set_skip_taskbar_hint(true);
  window_.set_skip_pager_hint(true);
  window_.set_app_paintable(true);
  window_.set_gravity(Gdk::GRAVITY_NORTH_WEST);
  // A modal dialog takes the input of its window group only: one of the main window must not keep
  // the user from writing a note.
  group_->add_window(window_);
}

void LinuxCapturePanel::setUpMessage() {
  message_.set_line_wrap(true);
  message_.set_line_wrap_mode(Pango::WRAP_WORD_CHAR);
  message_.set_xalign(0);
  message_.set_yalign(0.5);
  messageClip_.set_policy(Gtk::POLICY_EXTERNAL, Gtk::POLICY_EXTERNAL);
  messageClip_.set_shadow_type(Gtk::SHADOW_NONE);
  messageClip_.set_can_focus(false);
  messageClip_.add(message_);
  const auto css = Gtk::CssProvider::create();
  css->load_from_data("scrolledwindow, viewport { background: none; border: none; }");
  for (Gtk::Widget* widget : {static_cast<Gtk::Widget*>(&messageClip_), messageClip_.get_child()})
    widget->get_style_context()->add_provider(css, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  messageClip_.show_all();
}

void LinuxCapturePanel::useAlphaVisual() {
  if (const auto visual = window_.get_screen()->get_rgba_visual()) {
    gtk_widget_set_visual(GTK_WIDGET(window_.gobj()), visual->gobj());
  }
  connections_.push_back(window_.get_screen()->signal_composited_changed().connect(
      sigc::mem_fun(*this, &LinuxCapturePanel::redrawSurface)));
  connections_.push_back(
      window_.get_screen()->signal_monitors_changed().connect([this] { visibleFrame_.reset(); }));
}

void LinuxCapturePanel::connectEvents() {
  window_.add_events(Gdk::BUTTON_PRESS_MASK);
  // Closing the panel through the window manager dismisses it as Escape does.
  const auto dismiss = [this](GdkEventAny*) {
    delegate_.editorKeyDown({KeyEvent::escapeKey, 0}, false);
    return true;
  };
  const auto configure = [this](GdkEventConfigure* event) {
    configured(*event);
    return false;
  };
  const auto press = [this](GdkEventButton* event) { return buttonPressed(*event); };
  const auto draw = [this](const Cairo::RefPtr<Cairo::Context>& context) {
    card_.paint(context, size());
    return false;
  };
  const auto key = [this](GdkEventKey* event) { return keyPressed(*event); };
  // Kept to be disconnected in the destructor: destroying the window emits these events again.
  for (const auto& connection : {window_.signal_draw().connect(draw, false),
                                 window_.signal_key_press_event().connect(key, false),
                                 window_.signal_button_press_event().connect(press),
                                 window_.signal_configure_event().connect(configure, false),
                                 window_.signal_delete_event().connect(dismiss)}) {
    connections_.push_back(connection);
  }
}

// Except during a drag, trusts only synthetic ConfigureNotify events, which have root coordinates
// (ICCCM 4.1.5). Those of the X server are relative to the window manager's frame.
void LinuxCapturePanel::configured(const GdkEventConfigure& event) {
  if (!isVisible() || (!movedByUser_ && event.send_event == FALSE)) return;
  frame_.x = event.x;
  frame_.y = event.y;
  visibleFrame_.reset();
}

bool LinuxCapturePanel::keyPressed(const GdkEventKey& event) {
  if (editor_.inputMethodTakes(event)) return true;
  if (delegate_.editorKeyDown(keyEventFrom(event), editor_.isComposing())) return true;
  return !editor_.isComposing() && editor_.handleKey(event);
}

bool LinuxCapturePanel::buttonPressed(const GdkEventButton& event) {
  if (event.type != GDK_BUTTON_PRESS || event.button != GDK_BUTTON_PRIMARY) return false;
  movedByUser_ = true;
  window_.begin_move_drag(static_cast<int>(event.button), static_cast<int>(event.x_root),
                          static_cast<int>(event.y_root), event.time);
  return true;
}

void LinuxCapturePanel::setTitle(const std::string& title) {
  window_.set_title(title);
}

void LinuxCapturePanel::setAppearance(WindowAppearance appearance) {
  colorScheme_.setAppearance(appearance);
}

bool LinuxCapturePanel::systemIsDark() const {
  return colorScheme_.systemIsDark();
}

Size LinuxCapturePanel::size() const {
  return {static_cast<double>(frame_.width), static_cast<double>(frame_.height)};
}

Rectangle LinuxCapturePanel::frame() const {
  return ScreenGeometry().toCore(frame_);
}

void LinuxCapturePanel::setFrame(const Rectangle& frame) {
  const GdkRectangle wanted = ScreenGeometry().toGdk(frame);
  const bool moved = wanted.x != frame_.x || wanted.y != frame_.y;
  const bool resized = wanted.width != frame_.width || wanted.height != frame_.height;
  frame_ = wanted;
  if (moved || resized) visibleFrame_.reset();
  if (moved) {
    movedByUser_ = false;
    window_.move(frame_.x, frame_.y);
  }
  if (resized) placeChildren();
}

std::optional<Rectangle> LinuxCapturePanel::screenVisibleFrame() const {
  if (!visibleFrame_) visibleFrame_ = findScreenVisibleFrame();
  return *visibleFrame_;
}

std::optional<Rectangle> LinuxCapturePanel::findScreenVisibleFrame() const {
  const auto monitor = Gdk::Display::get_default()->get_monitor_at_point(
      frame_.x + frame_.width / 2, frame_.y + frame_.height / 2);
  if (!monitor) return std::nullopt;
  Gdk::Rectangle screen;
  monitor->get_geometry(screen);
  if (gdk_rectangle_intersect(screen.gobj(), &frame_, nullptr) == FALSE) return std::nullopt;
  Gdk::Rectangle area;
  monitor->get_workarea(area);
  return ScreenGeometry().toCore(*area.gobj());
}

void LinuxCapturePanel::makeKeyAndOrderFront() {
  GdkWindow* surface = window_.get_window()->gobj();
  const guint32 time = activationTime(surface);
  // Without it focus stealing prevention may keep the panel in the background
  // (EWMH _NET_WM_USER_TIME).
  if (GDK_IS_X11_WINDOW(surface)) gdk_x11_window_set_user_time(surface, time);
  if (!isVisible()) moveToFrame();
  window_.present(time);
  // Window managers do not focus a new utility window by themselves.
  gdk_window_focus(surface, time);
}

void LinuxCapturePanel::orderFront() {
  if (isVisible()) {
    window_.get_window()->raise();
    return;
  }
  moveToFrame();
  // Sets _NET_WM_USER_TIME (EWMH) to 0, which tells the window manager not to focus the window when
  // it is mapped. makeKeyAndOrderFront() sets it again.
  window_.set_focus_on_map(false);
  window_.show();
  window_.set_focus_on_map(true);
}

void LinuxCapturePanel::moveToFrame() {
  movedByUser_ = false;
  visibleFrame_.reset();
  window_.move(frame_.x, frame_.y);
}

void LinuxCapturePanel::orderOut() {
  focusWatch_.reset();
  editor_.commitComposition();
  window_.hide();
}

void LinuxCapturePanel::setMessage(const std::string& text) {
  const Glib::ustring shown = withModifierNames(text);
  // Setting the text lays the window out again.
  if (shown == message_.get_text()) return;
  message_.set_text(shown);
  messageHeightWidth_.reset();
}

void LinuxCapturePanel::setMessageColor(Color color) {
  auto attributes = messageAttributes(color);
  message_.set_attributes(attributes);
  messageHeightWidth_.reset();
}

double LinuxCapturePanel::messageTextHeight(double width) {
  if (std::exchange(messageHeightWidth_, width) == width) return messageHeight_;
  const auto layout = message_.create_pango_layout(message_.get_text());
  auto attributes = message_.get_attributes();
  layout->set_attributes(attributes);
  layout->set_width(pixels(width) * PANGO_SCALE);
  layout->set_wrap(Pango::WRAP_WORD_CHAR);
  int lineWidth = 0;
  int height = 0;
  layout->get_pixel_size(lineWidth, height);
  messageHeight_ = height;
  return messageHeight_;
}

void LinuxCapturePanel::setSubmitEnabled(bool enabled) {
  button_.widget().set_sensitive(enabled);
}

void LinuxCapturePanel::setSubmitOpacity(double opacity) {
  button_.widget().set_opacity(opacity);
}

void LinuxCapturePanel::setSubmitToolTip(const std::string& text) {
  button_.widget().set_tooltip_text(withModifierNames(text));
}

void LinuxCapturePanel::setSubmitAccessibilityLabel(const std::string& label) {
  button_.setAccessibilityLabel(label);
}

void LinuxCapturePanel::setLayout(const CapturePanelLayout& layout) {
  if (layout == layout_) return;
  layout_ = layout;
  placeChildren();
}

void LinuxCapturePanel::placeChildren() {
  auto frames = layout_.framesIn(size());
  // A message of the maximum height extends below the panel, which would grow to contain it.
  const double below = std::max(-frames.message.y, 0.0);
  frames.message.y += below;
  frames.message.height -= below;
  const auto place = [this](Gtk::Widget& widget, const Rectangle& frame) {
    widget.set_size_request(pixels(frame.width), pixels(frame.height));
    content_.move(widget, pixels(frame.x), pixels(size().height - frame.maxY()));
  };
  // The scroll bar is shown beside the text, in the padding of the card.
  const int scrollBarSpace = std::max(0, pixels(layout_.padding) - scrollBarDistance);
  editor_.setScrollBarSpace(scrollBarSpace);
  frames.editor.width += scrollBarSpace;
  place(editor_.widget(), frames.editor);
  place(messageClip_, frames.message);
  place(button_.widget(), frames.button);
  content_.set_size_request(frame_.width, frame_.height);
  card_.shape(size());
}

void LinuxCapturePanel::redrawSurface() {
  card_.redraw(size());
}

void LinuxCapturePanel::redrawSubmitButton() {
  button_.widget().queue_draw();
}

}  // namespace navora
