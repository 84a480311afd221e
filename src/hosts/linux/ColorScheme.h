#pragma once

#include <gio/gio.h>

#include "hosts/linux/GLibSupport.h"

namespace navora {

// Lets the application follow the desktop's choice between light and dark, which GTK 3 does not
// read by itself. A desktop without the settings portal keeps the look of its theme.
class ColorScheme {
 public:
  ColorScheme();
  ~ColorScheme();

  ColorScheme(const ColorScheme&) = delete;
  ColorScheme& operator=(const ColorScheme&) = delete;

 private:
  static void onRead(GObject* bus, GAsyncResult* result, gpointer);
  static void onChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                        GVariant* parameters, gpointer);
  void follow(GObjectPtr<GDBusConnection> bus);

  GObjectPtr<GCancellable> cancellable_;
  GObjectPtr<GDBusConnection> bus_;
  guint subscription_ = 0;
};

}  // namespace navora
