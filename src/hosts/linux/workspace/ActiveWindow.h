#pragma once

#include <optional>

#include <gdk/gdk.h>

namespace navora {

// The X server's identifier of the window that the window manager has made the active one; none
// without such a window, or where nobody can tell.
std::optional<unsigned long> activeWindow();

// The time that a request for the keyboard must carry to pass the window manager's prevention of
// focus stealing; GDK_CURRENT_TIME where there is no such thing. `window` is realised.
guint32 activationTime(GdkWindow* window);

// Whether that is another window than this one. Where nobody can tell, it is.
bool anotherWindowIsActive(GdkWindow* window);

// Returns whether one of this process's windows is the active one.
bool isApplicationActive();

// Makes the next window that asks to be presented do so with this token (startup notification,
// xdg-activation), which the desktop issued for the user's click outside of our windows.
void useActivationToken(const char* token);

}  // namespace navora
