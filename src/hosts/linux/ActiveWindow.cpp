#include "hosts/linux/ActiveWindow.h"

#ifdef GDK_WINDOWING_X11
#include <X11/Xatom.h>
#include <gdk/gdkx.h>
#endif

namespace navora {

bool anotherWindowIsActive(GdkWindow* window) {
#ifdef GDK_WINDOWING_X11
  if (GDK_IS_X11_WINDOW(window)) {
    GdkDisplay* display = gdk_window_get_display(window);
    Display* connection = GDK_DISPLAY_XDISPLAY(display);
    const Atom property = gdk_x11_get_xatom_by_name_for_display(display, "_NET_ACTIVE_WINDOW");
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char* data = nullptr;
    const int status = XGetWindowProperty(connection, DefaultRootWindow(connection), property, 0, 1,
                                          False, XA_WINDOW, &type, &format, &count, &rest, &data);
    Window active = None;
    if (status == Success && data != nullptr && format == 32 && count == 1)
      active = *reinterpret_cast<Window*>(data);
    if (data != nullptr) XFree(data);
    return active != gdk_x11_window_get_xid(window);
  }
#endif
  (void)window;
  return true;
}

}  // namespace navora
