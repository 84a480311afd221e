#pragma once

#include <optional>

#include <gdk/gdk.h>

namespace navora {

// The X server's identifier of the window that the window manager has made the active one; none
// without such a window, or where nobody can tell.
std::optional<unsigned long> activeWindow();

// Whether that is another window than this one. Where nobody can tell, it is.
bool anotherWindowIsActive(GdkWindow* window);

}  // namespace navora
