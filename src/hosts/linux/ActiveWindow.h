#pragma once

#include <gdk/gdk.h>

namespace navora {

// Whether the window manager has made another window the active one. Where nobody can tell, it has.
bool anotherWindowIsActive(GdkWindow* window);

}  // namespace navora
