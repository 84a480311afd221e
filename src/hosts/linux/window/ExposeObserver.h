#pragma once

#include <functional>
#include <vector>

#include <gtkmm/window.h>
#include <sigc++/connection.h>

namespace navora {

// Observes X11 Expose events: parts of a window that another window, such as a menu, has covered
// become visible again and must be redrawn. There are none where a compositor runs, nor on Wayland.
class ExposeObserver {
 public:
  // Calls `onExpose` after each series of Expose events. The window must outlive the observer.
  ExposeObserver(Gtk::Window& window, std::function<void()> onExpose);
  ~ExposeObserver();
  ExposeObserver(const ExposeObserver&) = delete;
  ExposeObserver& operator=(const ExposeObserver&) = delete;

 private:
  static GdkFilterReturn onEvent(GdkXEvent* event, GdkEvent*, gpointer self);
  void watch();
  void release();

  Gtk::Window& window_;
  const std::function<void()> onExpose_;
  GdkWindow* watched_ = nullptr;
  std::vector<sigc::connection> connections_;
};

}  // namespace navora
