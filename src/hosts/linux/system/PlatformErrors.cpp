#include "hosts/linux/system/PlatformErrors.h"

#include <webkit2/webkit2.h>

namespace navora {
namespace {

// WebKitGTK reports a load that our policy decision cancelled or turned into a download as
// FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE. The other policy errors are real failures.
bool wasCancelled(const GError& error) {
  return g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) != FALSE ||
         g_error_matches(&error, WEBKIT_POLICY_ERROR,
                         WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE) != FALSE ||
         g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
}

// The service has no owner on the bus, and the bus cannot start it.
bool isUnavailable(const GError& error) {
  if (error.domain != G_DBUS_ERROR) return false;
  switch (error.code) {
    case G_DBUS_ERROR_SERVICE_UNKNOWN:
    case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
    case G_DBUS_ERROR_SPAWN_EXEC_FAILED:
    case G_DBUS_ERROR_SPAWN_FORK_FAILED:
    case G_DBUS_ERROR_SPAWN_CHILD_EXITED:
    case G_DBUS_ERROR_SPAWN_CHILD_SIGNALED:
    case G_DBUS_ERROR_SPAWN_FAILED:
    case G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND:
      return true;
    default:
      return false;
  }
}

int codeOf(const GError& error) {
  if (wasCancelled(error)) return PlatformError::cancelledCode;
  if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE)
    return PlatformError::timedOutCode;
  if (isUnavailable(error)) return PlatformError::unavailableCode;
  return error.code;
}

}  // namespace

PlatformError platformErrorFrom(const GError& error) {
  return {g_quark_to_string(error.domain), codeOf(error), error.message};
}

PlatformError platformErrorFromErrno(int code) {
  return {"POSIX", code, g_strerror(code)};
}

}  // namespace navora
