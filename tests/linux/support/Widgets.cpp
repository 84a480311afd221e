#include "linux/support/Widgets.h"

#include <algorithm>

#include <gtkmm/container.h>

#include "linux/support/TestDesktop.h"

#include <gdk/gdkx.h>

namespace navora {
namespace {

void collect(GtkWidget* widget, gpointer found) {
  if (gtk_widget_is_visible(widget) == FALSE) return;
  static_cast<std::vector<Gtk::Widget*>*>(found)->push_back(Glib::wrap(widget));
  if (GTK_IS_CONTAINER(widget)) gtk_container_forall(GTK_CONTAINER(widget), collect, found);
}

}  // namespace

std::vector<Gtk::Widget*> visibleWidgets(Gtk::Widget& root) {
  std::vector<Gtk::Widget*> found;
  collect(root.gobj(), &found);
  return found;
}

bool isLaidOut(Gtk::Widget& widget) {
  return widget.get_mapped() && widget.get_allocated_width() > 1;
}

driver::Rectangle onScreen(Gtk::Widget& widget) {
  auto& top = dynamic_cast<Gtk::Window&>(*widget.get_toplevel());
  driver::Rectangle place;
  widget.translate_coordinates(top, 0, 0, place.x, place.y);
  int x = 0;
  int y = 0;
  top.get_window()->get_origin(x, y);
  return {place.x + x, place.y + y, widget.get_allocated_width(), widget.get_allocated_height()};
}

driver::WindowInfo infoOf(Gtk::Window& window) {
  const auto surface = window.get_window();
  if (!surface) return {};
  const auto id = static_cast<driver::WindowId>(gdk_x11_window_get_xid(surface->gobj()));
  return TestDesktop::current().display().window(id).value_or(driver::WindowInfo{});
}

bool isReadyForKeys(Gtk::Window& window) {
  return window.get_mapped() && window.is_active() && infoOf(window).active;
}

std::vector<Gtk::MessageDialog*> shownAlerts() {
  std::vector<Gtk::MessageDialog*> alerts;
  for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
    auto* alert = dynamic_cast<Gtk::MessageDialog*>(window);
    if (alert != nullptr && alert->get_visible()) alerts.push_back(alert);
  }
  return alerts;
}

}  // namespace navora
