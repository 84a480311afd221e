#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "notifications/NotificationItems.h"
#include "notifications/NotificationReplies.h"
#include "support/Date.h"
#include "support/Url.h"

namespace navora {

// What remains of the service's list once the user's wishes have been asked. Items without an id
// are left out.
struct NotificationSelection {
  struct Item {
    std::string id;
    // Absent if the user does not want the item now, or it leads nowhere.
    std::optional<NotificationContent> content;
  };

  // Of all items.
  std::set<std::string> ids;
  // The oldest first.
  std::vector<Item> items;

  // Of the body that answers to "/api/notifications", for the moment `now`. Absent if the body
  // cannot be read as a whole. A pure function that takes its time: for the background.
  static std::optional<NotificationSelection> read(std::string_view body,
                                                   const NotificationSettings& settings, Date now,
                                                   const Url& origin);
};

}  // namespace navora
