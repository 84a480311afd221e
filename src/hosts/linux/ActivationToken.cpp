#include "hosts/linux/ActivationToken.h"

#include <gdk/gdk.h>
#ifdef GDK_WINDOWING_X11
#include <gdk/gdkx.h>
#endif
#ifdef GDK_WINDOWING_WAYLAND
#include <gdk/gdkwayland.h>
#endif

namespace navora {

void useActivationToken(const char* token) {
  GdkDisplay* display = gdk_display_get_default();
#ifdef GDK_WINDOWING_X11
  if (GDK_IS_X11_DISPLAY(display)) gdk_x11_display_set_startup_notification_id(display, token);
#endif
#ifdef GDK_WINDOWING_WAYLAND
  if (GDK_IS_WAYLAND_DISPLAY(display)) {
    gdk_wayland_display_set_startup_notification_id(display, token);
  }
#endif
}

}  // namespace navora
