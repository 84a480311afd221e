#include "hosts/linux/window/ApplicationIcon.h"

#include <algorithm>
#include <array>
#include <vector>

#ifdef GDK_WINDOWING_WAYLAND
#include <gdk/gdkwayland.h>
#endif
#include <gtkmm/icontheme.h>
#include <gtkmm/window.h>

#include "hosts/linux/system/ApplicationId.h"

namespace navora {
namespace {

// The sizes of title bars, task lists, window switchers and docks, the last one also for doubled
// resolution. GTK by itself would render a scalable icon once, at 48 pixels.
constexpr std::array sizes{16, 24, 32, 48, 64, 128};

void addToTheme(Gtk::IconTheme& theme, const Glib::ustring& folder) {
  const auto known = theme.get_search_path();
  if (std::ranges::find(known, folder) == known.end()) theme.append_search_path(folder);
}

}  // namespace

void useApplicationIcon(const std::filesystem::path& dataFolder) {
  const auto theme = Gtk::IconTheme::get_default();
  addToTheme(*theme.get(), (dataFolder / "icons").string());
  std::vector<Glib::RefPtr<Gdk::Pixbuf>> icons;
  for (const int size : sizes) {
    GdkPixbuf* icon = gtk_icon_theme_load_icon(theme->gobj(), applicationId, size,
                                               GTK_ICON_LOOKUP_FORCE_SIZE, nullptr);
    if (icon != nullptr) icons.push_back(Glib::wrap(icon));
  }
  Gtk::Window::set_default_icon_list(icons);
}

void setApplicationId([[maybe_unused]] GdkWindow* window) {
#ifdef GDK_WINDOWING_WAYLAND
  if (GDK_IS_WAYLAND_WINDOW(window)) gdk_wayland_window_set_application_id(window, applicationId);
#endif
}

}  // namespace navora
