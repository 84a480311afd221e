#pragma once

#include <functional>
#include <optional>

#include <gdk/gdk.h>

namespace navora {

// Returns the X11 window id in _NET_ACTIVE_WINDOW (EWMH); std::nullopt if no window is active, the
// window manager does not set it, or the display is not X11.
std::optional<unsigned long> activeWindow();

// Returns the time stamp with which a request for the focus passes the window manager's
// focus-stealing prevention: the X server's present time, or GDK_CURRENT_TIME if the display is not
// X11. `window` must be realized.
guint32 activationTime(GdkWindow* window);

// Returns whether the active window is not `window`; true if the display is not X11.
bool anotherWindowIsActive(GdkWindow* window);

// Observes _NET_ACTIVE_WINDOW (EWMH), which the window manager keeps on the root window.
class ActiveWindowObserver {
 public:
  // Calls `onChange` after each change; never if the display is not X11.
  explicit ActiveWindowObserver(std::function<void()> onChange);
  ~ActiveWindowObserver();
  ActiveWindowObserver(const ActiveWindowObserver&) = delete;
  ActiveWindowObserver& operator=(const ActiveWindowObserver&) = delete;

 private:
  static GdkFilterReturn onEvent(GdkXEvent* event, GdkEvent*, gpointer self);

  const std::function<void()> onChange_;
};

// Returns whether one of this process's windows is the active one.
bool isApplicationActive();

// Passes on the activation token (startup notification on X11, xdg-activation on Wayland) that the
// desktop issued for a click outside our windows. The next window to be presented uses it.
void useActivationToken(const char* token);

}  // namespace navora
