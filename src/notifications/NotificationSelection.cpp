#include "notifications/NotificationSelection.h"

#include <utility>

#include "notifications/DesktopNotificationPolicy.h"
#include "support/Json.h"

namespace navora {

std::set<std::string> NotificationSelection::ids() const {
  std::set<std::string> ids;
  for (const Item& item : items)
    ids.insert(item.id);
  return ids;
}

std::optional<NotificationSelection> NotificationSelection::read(
    std::string_view body, const NotificationSettings& settings, Date now, const Url& origin) {
  auto reply = parseJson(body);
  const auto list = reply ? NotificationList::read(*std::move(reply)) : std::nullopt;
  if (!list) return std::nullopt;
  const bool quiet =
      DesktopNotificationPolicy::isQuiet(settings.quietHours, now, settings.timeZone);
  NotificationSelection selection;
  // The service lists the newest item first.
  for (auto item = list->items.rbegin(); item != list->items.rend(); ++item) {
    auto id = stringMember(*item, "id");
    if (!id) continue;
    const bool wanted = DesktopNotificationPolicy::shouldDeliver(*item, settings.preferences,
                                                                 list->defaults, quiet);
    const auto destination = wanted ? notificationDestination(*item, origin) : std::nullopt;
    Item& selected = selection.items.emplace_back(Item{*std::move(id), std::nullopt});
    if (destination) selected.content = notificationContent(*item, *destination);
  }
  return selection;
}

}  // namespace navora
