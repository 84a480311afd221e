#pragma once

#include <string>
#include <vector>

#include <gtkmm/messagedialog.h>
#include <gtkmm/widget.h>
#include <gtkmm/window.h>

#include "end_to_end/driver/Display.h"
#include "end_to_end/driver/Geometry.h"

namespace navora {

// Every visible widget below `root` and itself, in drawing order, parts of other widgets included.
std::vector<Gtk::Widget*> visibleWidgets(Gtk::Widget& root);

template <typename Type>
std::vector<Type*> visibleWidgetsOf(Gtk::Widget& root) {
  std::vector<Type*> found;
  for (Gtk::Widget* widget : visibleWidgets(root)) {
    if (auto* wanted = dynamic_cast<Type*>(widget)) found.push_back(wanted);
  }
  return found;
}

// Whether the widget is shown and has got its place.
bool isLaidOut(Gtk::Widget& widget);

// Where the widget is on the screen.
driver::Rectangle onScreen(Gtk::Widget& widget);

// The window manager's view of a window that has been shown.
driver::WindowInfo infoOf(Gtk::Window& window);

// Whether the window is on the screen and the one that the keyboard goes to.
bool isReadyForKeys(Gtk::Window& window);

// The alerts on the screen, in no order.
std::vector<Gtk::MessageDialog*> shownAlerts();

}  // namespace navora
