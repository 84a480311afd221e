#include <cstddef>
#include <cstdint>

#include "notifications/DesktopNotificationPolicy.h"
#include "notifications/NotificationItems.h"
#include "notifications/NotificationReplies.h"
#include "origin/DesktopOrigin.h"
#include "support/FatalError.h"

// Reads the input as each of the service's replies.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace navora;
  const Url& origin = DesktopOrigin::production();
  const auto reply = parseJson({reinterpret_cast<const char*>(data), size});
  if (!reply) return 0;
  (void)readUserId(*reply);
  const auto settings =
      NotificationSettings::read(*reply).value_or(NotificationSettings{{}, "off", "UTC"});
  const bool quiet = DesktopNotificationPolicy::isQuiet(settings.quietHours, {}, settings.timeZone);
  const auto list = NotificationList::read(*reply);
  if (!list) return 0;
  for (const Json& item : list->items) {
    const auto destination = notificationDestination(item, origin);
    (void)userNotification("id", notificationContent(item, destination.value_or(origin)));
    const bool shown =
        DesktopNotificationPolicy::shouldDeliver(item, settings.preferences, list->defaults, quiet);
    const bool leadsAway = destination && (!DesktopOrigin::contains(*destination, origin) ||
                                           Url::parse(destination->string()) != destination);
    if (!item.is_object() || leadsAway || (shown && (quiet || !stringMember(item, "kind")))) {
      fatalError("A property of items does not hold", "NotificationRepliesFuzzer", __LINE__);
    }
  }
  return 0;
}
