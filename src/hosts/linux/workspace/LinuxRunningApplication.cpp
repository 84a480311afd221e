#include "hosts/linux/workspace/LinuxRunningApplication.h"

#include "hosts/linux/workspace/ActiveWindow.h"

#include <gdk/gdkx.h>

namespace navora {
namespace {

// EWMH source indication of _NET_ACTIVE_WINDOW: a direct request of the user.
constexpr long sourceIsPager = 2;

}  // namespace

std::shared_ptr<LinuxRunningApplication> LinuxRunningApplication::frontmost() {
  const auto window = activeWindow();
  if (!window) return nullptr;
  // Some window managers leave a destroyed window in _NET_ACTIVE_WINDOW.
  auto application = std::make_shared<LinuxRunningApplication>(*window);
  return application->isTerminated() ? nullptr : application;
}

bool LinuxRunningApplication::isTerminated() const {
  GdkDisplay* display = gdk_display_get_default();
  gdk_x11_display_error_trap_push(display);
  XWindowAttributes attributes{};
  XGetWindowAttributes(GDK_DISPLAY_XDISPLAY(display), window_, &attributes);
  return gdk_x11_display_error_trap_pop(display) != 0;
}

void LinuxRunningApplication::activate() {
  GdkDisplay* gdkDisplay = gdk_display_get_default();
  Display* display = GDK_DISPLAY_XDISPLAY(gdkDisplay);
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = window_;
  event.xclient.message_type =
      gdk_x11_get_xatom_by_name_for_display(gdkDisplay, "_NET_ACTIVE_WINDOW");
  event.xclient.format = 32;
  event.xclient.data.l[0] = sourceIsPager;
  event.xclient.data.l[1] = static_cast<long>(gdk_x11_display_get_user_time(gdkDisplay));
  gdk_x11_display_error_trap_push(gdkDisplay);
  XSendEvent(display, DefaultRootWindow(display), False,
             SubstructureRedirectMask | SubstructureNotifyMask, &event);
  gdk_x11_display_error_trap_pop_ignored(gdkDisplay);
  gdk_display_flush(gdkDisplay);
}

}  // namespace navora
