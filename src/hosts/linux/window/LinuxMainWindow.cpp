#include "hosts/linux/window/LinuxMainWindow.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <glibmm/main.h>
#include <gtkmm/stylecontext.h>

#include "hosts/linux/web/LinuxWebView.h"
#include "hosts/linux/window/ApplicationIcon.h"
#include "hosts/linux/window/ColorScheme.h"
#include "hosts/linux/workspace/ActiveWindow.h"
#include "hosts/linux/workspace/ScreenGeometry.h"
#include "support/Json.h"

namespace navora {
namespace {

constexpr unsigned saveDelayMilliseconds = 500;

std::optional<Size> readSize(const std::optional<Json>& value) {
  if (!value) return std::nullopt;
  const auto width = numberMember(*value, "width");
  const auto height = numberMember(*value, "height");
  if (!width || !height || !(*width >= 1) || !(*height >= 1)) return std::nullopt;
  return Size{*width, *height};
}

// Returns the work area's size. A size stored on a larger monitor would put the window's edges out
// of reach.
Size availableSize() {
  GdkMonitor* monitor = mainMonitor();
  if (monitor == nullptr) return {1e6, 1e6};
  GdkRectangle area{};
  gdk_monitor_get_workarea(monitor, &area);
  return {static_cast<double>(area.width), static_cast<double>(area.height)};
}

}  // namespace

LinuxMainWindow::LinuxMainWindow(const MainWindowDescription& description,
                                 MainWindowDelegate& delegate, UserDefaults& defaults,
                                 ColorScheme& colorScheme)
    : defaults_(defaults), colorScheme_(colorScheme), description_(description) {
  window_.set_title(description.title);
  window_.set_position(Gtk::WIN_POS_CENTER);
  restoreSize(0);
  overlay_.set_size_request(static_cast<int>(description.minimumSize.width),
                            static_cast<int>(description.minimumSize.height));
  layout_.pack_end(overlay_, true, true);
  layout_.show();
  overlay_.show();
  window_.add(layout_);

  window_.signal_delete_event().connect(
      [&delegate](GdkEventAny*) { return !delegate.windowShouldClose(); });
  window_.signal_configure_event().connect(
      [this](GdkEventConfigure*) {
        sizeChanged();
        return false;
      },
      false);
  // Every map creates a new xdg_toplevel.
  window_.signal_map().connect([this] { setApplicationId(window_.get_window()->gobj()); });
  window_.signal_style_updated().connect([this] { matchBackgroundToTheme(); });
}

LinuxMainWindow::~LinuxMainWindow() {
  if (pendingSave_.connected()) saveSize();
  pendingSave_.disconnect();
}

void LinuxMainWindow::restoreSize(int menuBarHeight) {
  const Size available = availableSize();
  const auto withMenuBar = [&](Size content) {
    return Size{content.width, content.height + menuBarHeight};
  };
  const Size minimum = withMenuBar(description_.minimumSize);
  const Size wanted = readSize(defaults_.value(description_.frameAutosaveName))
                          .value_or(withMenuBar(description_.contentSize));
  const auto fit = [](double value, double least, double most) {
    return static_cast<int>(std::max(least, std::min(value, most)));
  };
  window_.set_default_size(fit(wanted.width, minimum.width, available.width),
                           fit(wanted.height, minimum.height, available.height));
}

void LinuxMainWindow::sizeChanged() {
  pendingSave_.disconnect();
  pendingSave_ = Glib::signal_timeout().connect(
      [this] {
        saveSize();
        return false;
      },
      saveDelayMilliseconds);
}

void LinuxMainWindow::saveSize() {
  if (window_.is_maximized() || !window_.get_realized()) return;
  int width = 0;
  int height = 0;
  window_.get_size(width, height);
  Json size = {{"width", width}, {"height", height}};
  const std::string& name = description_.frameAutosaveName;
  if (defaults_.value(name) != size) defaults_.setValue(name, std::move(size));
}

void LinuxMainWindow::setTitle(const std::string& title) {
  window_.set_title(title);
}

void LinuxMainWindow::setMenuBar(Gtk::Widget& menuBar) {
  layout_.pack_start(menuBar, false, false);
  int minimum = 0;
  int natural = 0;
  menuBar.get_preferred_height(minimum, natural);
  restoreSize(natural);
}

void LinuxMainWindow::setContentView(std::shared_ptr<WebView> webView) {
  webView_ = std::static_pointer_cast<LinuxWebView>(std::move(webView));
  gtk_container_add(GTK_CONTAINER(overlay_.gobj()), webView_->widget());
  gtk_widget_show(webView_->widget());
  updateContentFocus();
  matchBackgroundToTheme();
}

// The view shows this colour until the page paints, which avoids a white flash on a dark desktop.
void LinuxMainWindow::matchBackgroundToTheme() {
  Gdk::RGBA color;
  if (webView_ && window_.get_style_context()->lookup_color("theme_bg_color", color)) {
    webView_->setBackgroundColor(*color.gobj());
  }
}

void LinuxMainWindow::makeContentViewFirstResponder() {
  focusContent();
}

void LinuxMainWindow::setAppearance(WindowAppearance appearance) {
  colorScheme_.setAppearance(appearance);
}

bool LinuxMainWindow::isMiniaturized() const {
  const auto surface = window_.get_window();
  return surface && (surface->get_state() & Gdk::WINDOW_STATE_ICONIFIED) != 0;
}

void LinuxMainWindow::deminiaturize() {
  window_.deiconify();
}

void LinuxMainWindow::makeKeyAndOrderFront() {
  const bool wasVisible = isVisible();
  window_.present();
  if (!wasVisible) focusContent();
}

void LinuxMainWindow::orderOut() {
  window_.hide();
}

void LinuxMainWindow::forceToFront() {
  if (isVisible()) window_.present(activationTime(window_.get_window()->gobj()));
}

void LinuxMainWindow::focusContent() {
  if (!covers_.empty()) {
    covers_.back()->grab_focus();
  } else if (webView_) {
    gtk_widget_grab_focus(webView_->widget());
  }
}

void LinuxMainWindow::coverContent(Gtk::Widget& focus) {
  covers_.push_back(&focus);
  focusContent();
  updateContentFocus();
}

void LinuxMainWindow::uncoverContent(Gtk::Widget& focus) {
  std::erase(covers_, &focus);
  updateContentFocus();
  focusContent();
}

// A page that cannot have the focus is left out by Tab, and cannot take the focus by itself.
void LinuxMainWindow::updateContentFocus() {
  if (webView_) gtk_widget_set_can_focus(webView_->widget(), covers_.empty() ? TRUE : FALSE);
}

}  // namespace navora
