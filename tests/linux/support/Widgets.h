#pragma once

#include <string>
#include <vector>

#include <gtkmm/messagedialog.h>
#include <gtkmm/widget.h>
#include <gtkmm/window.h>

#include "end_to_end/driver/Display.h"
#include "end_to_end/driver/Geometry.h"

namespace navora {

// Returns `root` and all visible widgets below it, internal children included, in drawing order.
std::vector<Gtk::Widget*> visibleWidgets(Gtk::Widget& root);

template <typename Type>
std::vector<Type*> visibleWidgetsOf(Gtk::Widget& root) {
  std::vector<Type*> found;
  for (Gtk::Widget* widget : visibleWidgets(root)) {
    if (auto* wanted = dynamic_cast<Type*>(widget)) found.push_back(wanted);
  }
  return found;
}

// Returns whether the widget is shown and allocated.
bool isLaidOut(Gtk::Widget& widget);

// Returns the widget's area on the screen.
driver::Rectangle onScreen(Gtk::Widget& widget);

// Returns the X11 window of a window that has been shown.
driver::WindowInfo infoOf(Gtk::Window& window);

// Returns whether the window is mapped and has the keyboard focus.
bool isReadyForKeys(Gtk::Window& window);

// Returns the alerts on the screen, in any order.
std::vector<Gtk::MessageDialog*> shownAlerts();

}  // namespace navora
