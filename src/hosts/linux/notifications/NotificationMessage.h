#pragma once

#include <cstdint>

#include <gio/gio.h>

#include "platform/NotificationCenter.h"

namespace navora {

// The capabilities of a notification service (org.freedesktop.Notifications) that messages
// depend on.
struct NotificationCapabilities {
  // "actions": reports clicks.
  bool actions = false;
  // "body-markup": parses the body as markup.
  bool markup = false;
};

// Parses the reply to GetCapabilities, which has the type (as).
NotificationCapabilities notificationCapabilities(GVariant* reply);

// The key of the action that is invoked by a click on the notification itself.
inline constexpr const char* defaultNotificationAction = "default";

// Returns the arguments of Notify as a floating reference. `replacedNumber` is the service's number
// of the notification that this one replaces, or 0.
GVariant* notificationMessage(const UserNotification& notification, std::uint32_t replacedNumber,
                              NotificationCapabilities capabilities, bool sound);

}  // namespace navora
