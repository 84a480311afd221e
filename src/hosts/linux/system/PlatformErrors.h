#pragma once

#include <glib.h>

#include "platform/PlatformError.h"

namespace navora {

// The engine's error as the core knows it: everything that somebody stopped on purpose is
// cancelled.
PlatformError platformErrorFrom(const GError& error);

}  // namespace navora
