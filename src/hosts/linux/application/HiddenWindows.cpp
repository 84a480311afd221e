#include "hosts/linux/application/HiddenWindows.h"

#include <algorithm>
#include <utility>

namespace navora {
namespace {

std::vector<GObjectPtr<GtkWidget>> allWindows() {
  std::vector<GObjectPtr<GtkWidget>> windows;
  GList* list = gtk_window_list_toplevels();
  for (GList* each = list; each != nullptr; each = each->next)
    windows.push_back(GObjectPtr<GtkWidget>::retain(GTK_WIDGET(each->data)));
  g_list_free(list);
  return windows;
}

}  // namespace

void HiddenWindows::hideAllBut(std::initializer_list<GtkWidget*> kept) {
  for (const auto& window : allWindows()) {
    GtkWidget* widget = window.get();
    // Menus and tooltips are popups, and are closed by their owners.
    if (gtk_window_get_window_type(GTK_WINDOW(widget)) == GTK_WINDOW_POPUP) continue;
    if (gtk_widget_get_visible(widget) == FALSE) continue;
    if (std::ranges::find(kept, widget) != kept.end()) continue;
    gtk_widget_hide(widget);
    windows_.push_back(window);
  }
}

void HiddenWindows::showAgain() {
  // GTK lists the windows that have not been destroyed.
  const auto existing = allWindows();
  for (const auto& window : std::exchange(windows_, {})) {
    const bool exists =
        std::ranges::any_of(existing, [&](const auto& each) { return each.get() == window.get(); });
    if (exists) gtk_widget_show(window.get());
  }
}

}  // namespace navora
