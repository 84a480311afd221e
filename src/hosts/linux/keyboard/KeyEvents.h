#pragma once

#include <gdk/gdk.h>

#include "platform/KeyEvent.h"

namespace navora {

// The key press in the core's terms. Keys are told by what they type, whatever the keyboard's
// layout; Alt is Option, Super is Command.
KeyEvent keyEventFrom(const GdkEventKey& event);

// The same for combinations that the core writes with Command, the other platform's main modifier:
// here that is Control, and Super takes its place.
KeyEvent shortcutEventFrom(const GdkEventKey& event);

// The key value, in lower case, that the key has in a combination such as Control+Z: under a layout
// without Latin letters that of the first of the user's layouts which has one there.
guint latinKeyFrom(const GdkEventKey& event);

}  // namespace navora
