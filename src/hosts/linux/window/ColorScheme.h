#pragma once

#include <optional>

#include <gio/gio.h>
#include <sigc++/signal.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/WindowAppearance.h"

namespace navora {

// Makes the application follow the desktop's preference for light or dark, which GTK 3 does not
// read itself (xdg-desktop-portal Settings, org.freedesktop.appearance color-scheme), or an
// appearance that the page sets. Without the portal the theme decides.
class ColorScheme {
 public:
  ColorScheme();
  ~ColorScheme();

  ColorScheme(const ColorScheme&) = delete;
  ColorScheme& operator=(const ColorScheme&) = delete;

  // Returns whether the desktop is dark, independently of setAppearance().
  bool systemIsDark() const { return systemIsDark_; }
  // Emitted with the new value of systemIsDark() after a change.
  sigc::signal<void, bool> systemChanged;

  // Sets the appearance of all windows: GTK 3 has one per process.
  void setAppearance(WindowAppearance appearance);

 private:
  static void onRead(GObject* bus, GAsyncResult* result, gpointer self);
  static void onChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                        GVariant* parameters, gpointer self);
  void preferenceReceived(GVariantPtr value);
  bool isDesktopDark() const;
  void applyAppearance();
  static void setDark(bool dark);
  void subscribe(GObjectPtr<GDBusConnection> bus);

  GObjectPtr<GCancellable> cancellable_;
  GObjectPtr<GDBusConnection> bus_;
  guint subscription_ = 0;
  // The desktop's preference; nullopt if it leaves the choice to the theme.
  std::optional<bool> preference_;
  WindowAppearance appearance_ = WindowAppearance::system;
  // GTK's own setting as the user configured it.
  bool userPrefersDark_ = false;
  bool systemIsDark_ = false;
};

}  // namespace navora
