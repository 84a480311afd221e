#pragma once

#include <filesystem>

#include <gdk/gdk.h>

namespace navora {

// Makes the application's icon the default icon of every window, and known to the icon theme by
// name (`applicationId`).
//
// `dataFolder` is the "share" folder that belongs to the executable. Its icons are added to the
// theme, which the desktop itself does only for those of an installed program, not for those of a
// build tree or an unpacked archive. Without any icon of that name windows keep the desktop's
// generic one.
void useApplicationIcon(const std::filesystem::path& dataFolder);

// Names the application of a mapped window to a Wayland compositor (xdg_toplevel.set_app_id), which
// finds the desktop entry and its icon by it. On X11 the class of a window (WM_CLASS,
// StartupWMClass) serves this purpose and the function does nothing.
void setApplicationId(GdkWindow* window);

}  // namespace navora
