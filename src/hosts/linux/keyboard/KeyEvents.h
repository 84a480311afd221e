#pragma once

#include <gdk/gdk.h>

#include "platform/KeyEvent.h"

namespace navora {

// Translates a key press to the core's key codes and modifiers, with Alt as Option and Super as
// Command. The key code depends on the symbol typed, not on the position of the key.
KeyEvent keyEventFrom(const GdkEventKey& event);

// The same for shortcuts, which the core writes with Command: Control is reported as Command, and
// Super as Control.
KeyEvent shortcutEventFrom(const GdkEventKey& event);

// Returns the lower-case key value to match in a shortcut such as Control+Z. Under a layout without
// Latin letters it is that of the same key in the user's first layout that has an ASCII character
// there.
guint latinKeyFrom(const GdkEventKey& event);

}  // namespace navora
