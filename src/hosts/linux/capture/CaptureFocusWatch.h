#pragma once

#include <functional>
#include <vector>

#include <gtkmm/window.h>
#include <sigc++/connection.h>

#include "hosts/linux/workspace/ActiveWindow.h"

namespace navora {

// Observes when a window that had the keyboard focus has lost it to another window. A program that
// grabs the keyboard (for a hot key, a menu, a screen locker) takes the focus too, but another
// window becomes active only if the user goes there. Without such a change the watch never wakes.
class CaptureFocusWatch {
 public:
  // Calls `onLost` once each time, later. The window must outlive the watch and be realized while
  // it has the focus.
  CaptureFocusWatch(Gtk::Window& window, std::function<void()> onLost);
  ~CaptureFocusWatch();
  CaptureFocusWatch(const CaptureFocusWatch&) = delete;
  CaptureFocusWatch& operator=(const CaptureFocusWatch&) = delete;

  // Reports nothing until the window has had the focus again.
  void reset();

 private:
  void checkLater();
  void check();

  Gtk::Window& window_;
  const std::function<void()> onLost_;
  bool hadFocus_ = false;
  sigc::connection check_;
  std::vector<sigc::connection> connections_;
  ActiveWindowObserver activeWindow_;
};

}  // namespace navora
