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

// The service's list after the user's settings have been applied. Items without an id are dropped.
struct NotificationSelection {
  struct Item {
    std::string id;
    // Absent if the item is not to be shown: not wanted now, or without a destination.
    std::optional<NotificationContent> content;
  };

  // The oldest first.
  std::vector<Item> items;

  // Collects the ids of all items.
  std::set<std::string> ids() const;

  // Reads the body of a reply to "/api/notifications" and decides for each item, as of `now`,
  // whether it is to be shown. Returns nullopt if any part of the body is invalid. A pure function
  // that takes long for long lists; call it in the background.
  static std::optional<NotificationSelection> read(std::string_view body,
                                                   const NotificationSettings& settings, Date now,
                                                   const Url& origin);
};

}  // namespace navora
