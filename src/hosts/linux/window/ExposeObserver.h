#pragma once

#include <functional>
#include <vector>

#include <gtkmm/window.h>
#include <sigc++/connection.h>

namespace navora {

// Tells when a part of a window appears that another window, a menu or a panel, has covered. That
// happens where no compositor runs and X11 forgets what is covered; everywhere else never.
class ExposeObserver {
 public:
  // The window must outlive this object.
  ExposeObserver(Gtk::Window& window, std::function<void()> onAppear);
  ~ExposeObserver();
  ExposeObserver(const ExposeObserver&) = delete;
  ExposeObserver& operator=(const ExposeObserver&) = delete;

 private:
  static GdkFilterReturn onEvent(GdkXEvent* event, GdkEvent*, gpointer self);
  void watch();
  void release();

  Gtk::Window& window_;
  const std::function<void()> onAppear_;
  GdkWindow* watched_ = nullptr;
  std::vector<sigc::connection> connections_;
};

}  // namespace navora
