#include <gtest/gtest.h>
#include <webkit2/webkit2.h>

#include "hosts/linux/system/GLibSupport.h"
#include "hosts/linux/system/PlatformErrors.h"

namespace navora {
namespace {

PlatformError errorFrom(GQuark domain, int code, const char* message) {
  const GErrorPtr error(g_error_new_literal(domain, code, message));
  return platformErrorFrom(*error);
}

TEST(PlatformErrorsTest, KeepDomainCodeAndDescription) {
  const PlatformError expected{"g-io-error-quark", G_IO_ERROR_CONNECTION_REFUSED, "Refused"};
  EXPECT_EQ(errorFrom(G_IO_ERROR, G_IO_ERROR_CONNECTION_REFUSED, "Refused"), expected);
}

TEST(PlatformErrorsTest, ACancelledLoadHasTheCodeOfTheCore) {
  const int cancelled = PlatformError::cancelledCode;
  EXPECT_EQ(errorFrom(WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED, "").code, cancelled);
  EXPECT_EQ(errorFrom(WEBKIT_POLICY_ERROR,
                      WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE, "")
                .code,
            cancelled);
  EXPECT_EQ(errorFrom(G_IO_ERROR, G_IO_ERROR_CANCELLED, "").code, cancelled);
}

TEST(PlatformErrorsTest, ATimedOutLoadHasTheCodeOfTheCore) {
  EXPECT_EQ(errorFrom(G_IO_ERROR, G_IO_ERROR_TIMED_OUT, "").code, PlatformError::timedOutCode);
}

TEST(PlatformErrorsTest, AServiceThatCannotBeStartedHasTheCodeOfTheCore) {
  for (const int code : {G_DBUS_ERROR_SERVICE_UNKNOWN, G_DBUS_ERROR_SPAWN_CHILD_EXITED,
                         G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND}) {
    EXPECT_EQ(errorFrom(G_DBUS_ERROR, code, "").code, PlatformError::unavailableCode) << code;
  }
  EXPECT_EQ(errorFrom(G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS, "").code, G_DBUS_ERROR_INVALID_ARGS);
}

TEST(PlatformErrorsTest, TheSameCodesInOtherDomainsAreKept) {
  EXPECT_EQ(errorFrom(G_FILE_ERROR, G_IO_ERROR_CANCELLED, "").code, G_IO_ERROR_CANCELLED);
  EXPECT_EQ(errorFrom(WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_CANNOT_SHOW_URI, "").code,
            WEBKIT_POLICY_ERROR_CANNOT_SHOW_URI);
}

}  // namespace
}  // namespace navora
