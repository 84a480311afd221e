#pragma once

#include <functional>
#include <vector>

#include <gtkmm/window.h>
#include <sigc++/connection.h>

namespace navora {

// Tells when a part of a window appears that another window, a menu or a panel, has covered. That
// happens where no compositor runs and X11 forgets what is covered; everywhere else never.
class UncoveredParts {
 public:
  // The window must outlive this object.
  UncoveredParts(Gtk::Window& window, std::function<void()> onAppear);
  ~UncoveredParts();
  UncoveredParts(const UncoveredParts&) = delete;
  UncoveredParts& operator=(const UncoveredParts&) = delete;

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
