#pragma once

#include <string>
#include <string_view>

#include "platform/DebugArea.h"

namespace navora {

// Turns on the areas that a value of NAVORA_DEBUG names, in GLib's debug log: the area `navigation`
// is the log domain "navora-navigation", so G_MESSAGES_DEBUG and journald's filters know it too.
// The log is written to standard error. Called at the start of the program, before other threads
// run, because it changes the environment.
void enableDebugLog(std::string_view request);

// Writes one line to the debug log; nothing is written unless the area is turned on.
void debugLog(DebugArea area, const std::string& line);

}  // namespace navora
