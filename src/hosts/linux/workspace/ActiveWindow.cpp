#include "hosts/linux/workspace/ActiveWindow.h"

#include <algorithm>
#include <memory>
#include <utility>

#include <X11/Xatom.h>
#include <gdk/gdkx.h>
#ifdef GDK_WINDOWING_WAYLAND
#include <gdk/gdkwayland.h>
#endif
#include <gtkmm/window.h>

namespace navora {
namespace {

struct XDeleter {
  void operator()(unsigned char* data) const { XFree(data); }
};

Atom activeWindowAtom(GdkDisplay* display) {
  return gdk_x11_get_xatom_by_name_for_display(display, "_NET_ACTIVE_WINDOW");
}

}  // namespace

std::optional<unsigned long> activeWindow() {
  GdkDisplay* gdkDisplay = gdk_display_get_default();
  if (!GDK_IS_X11_DISPLAY(gdkDisplay)) return std::nullopt;
  Display* display = GDK_DISPLAY_XDISPLAY(gdkDisplay);
  Atom type = None;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  XGetWindowProperty(display, DefaultRootWindow(display), activeWindowAtom(gdkDisplay), 0, 1, False,
                     XA_WINDOW, &type, &format, &count, &rest, &data);
  const std::unique_ptr<unsigned char, XDeleter> owner(data);
  if (data == nullptr || type != XA_WINDOW || format != 32 || count != 1) return std::nullopt;
  const Window window = *reinterpret_cast<const Window*>(data);
  return window == None ? std::nullopt : std::optional<unsigned long>(window);
}

guint32 activationTime(GdkWindow* window) {
  return GDK_IS_X11_WINDOW(window) ? gdk_x11_get_server_time(window) : GDK_CURRENT_TIME;
}

bool anotherWindowIsActive(GdkWindow* window) {
  if (!GDK_IS_X11_WINDOW(window)) return true;
  return activeWindow() != gdk_x11_window_get_xid(window);
}

ActiveWindowObserver::ActiveWindowObserver(std::function<void()> onChange)
    : onChange_(std::move(onChange)) {
  GdkWindow* root = gdk_get_default_root_window();
  if (!GDK_IS_X11_WINDOW(root)) return;
  gdk_window_set_events(
      root, static_cast<GdkEventMask>(gdk_window_get_events(root) | GDK_PROPERTY_CHANGE_MASK));
  gdk_window_add_filter(root, onEvent, this);
}

ActiveWindowObserver::~ActiveWindowObserver() {
  gdk_window_remove_filter(gdk_get_default_root_window(), onEvent, this);
}

GdkFilterReturn ActiveWindowObserver::onEvent(GdkXEvent* event, GdkEvent*, gpointer self) {
  const auto& change = static_cast<XEvent*>(event)->xproperty;
  if (change.type == PropertyNotify && change.atom == activeWindowAtom(gdk_display_get_default()))
    static_cast<ActiveWindowObserver*>(self)->onChange_();
  return GDK_FILTER_CONTINUE;
}

bool isApplicationActive() {
  const auto windows = Gtk::Window::list_toplevels();
  return std::ranges::any_of(windows,
                             [](const Gtk::Window* window) { return window->is_active(); });
}

void useActivationToken(const char* token) {
  GdkDisplay* display = gdk_display_get_default();
  if (GDK_IS_X11_DISPLAY(display)) gdk_x11_display_set_startup_notification_id(display, token);
#ifdef GDK_WINDOWING_WAYLAND
  if (GDK_IS_WAYLAND_DISPLAY(display)) {
    gdk_wayland_display_set_startup_notification_id(display, token);
  }
#endif
}

}  // namespace navora
