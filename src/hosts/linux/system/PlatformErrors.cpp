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

int codeOf(const GError& error) {
  if (wasCancelled(error)) return PlatformError::cancelledCode;
  if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != FALSE)
    return PlatformError::timedOutCode;
  return error.code;
}

}  // namespace

PlatformError platformErrorFrom(const GError& error) {
  return {g_quark_to_string(error.domain), codeOf(error), error.message};
}

}  // namespace navora
