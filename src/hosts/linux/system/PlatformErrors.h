#pragma once

#include <glib.h>

#include "platform/PlatformError.h"

namespace navora {

// Converts an error of GLib, libsoup or WebKitGTK. A deliberate cancellation, by the user or by a
// policy decision, has the code PlatformError::cancelledCode, a time-out
// PlatformError::timedOutCode.
PlatformError platformErrorFrom(const GError& error);

// Converts an errno value.
PlatformError platformErrorFromErrno(int code);

}  // namespace navora
