#pragma once

#include <optional>

#include <gio/gio.h>
#include <sigc++/signal.h>

#include "hosts/linux/system/GLibSupport.h"
#include "platform/WindowAppearance.h"

namespace navora {

// Lets the application follow the desktop's choice between light and dark, which GTK 3 does not
// read by itself, or look otherwise while the page does. A desktop without the settings portal
// keeps the look of its theme.
class ColorScheme {
 public:
  ColorScheme();
  ~ColorScheme();

  ColorScheme(const ColorScheme&) = delete;
  ColorScheme& operator=(const ColorScheme&) = delete;

  // Whether the desktop is dark, whatever the application looks like.
  bool systemIsDark() const { return systemIsDark_; }
  // Emitted with the new value after that has changed.
  sigc::signal<void, bool> systemChanged;

  // How the application looks. GTK 3 knows one look for all windows of a process.
  void setAppearance(WindowAppearance appearance);

 private:
  static void onRead(GObject* bus, GAsyncResult* result, gpointer self);
  static void onChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                        GVariant* parameters, gpointer self);
  void readPreference(GVariantPtr value);
  void applyAppearance();
  void look(bool dark);
  void follow(GObjectPtr<GDBusConnection> bus);

  GObjectPtr<GCancellable> cancellable_;
  GObjectPtr<GDBusConnection> bus_;
  guint subscription_ = 0;
  // What the desktop says; nothing when it leaves the choice to the theme.
  std::optional<bool> preference_;
  WindowAppearance appearance_ = WindowAppearance::system;
  // What the user has told the toolkit itself.
  bool userPrefersDark_ = false;
  bool systemIsDark_ = false;
};

}  // namespace navora
