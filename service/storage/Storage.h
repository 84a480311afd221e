#pragma once

#include <map>
#include <string>
#include <utility>

#include "storage/Accounts.h"
#include "storage/Calendar.h"
#include "storage/Captures.h"
#include "storage/Circles.h"
#include "storage/Database.h"
#include "storage/Notifications.h"
#include "storage/SettingsStore.h"

namespace navora::service {

/// Everything that the service keeps, over one database.
struct Storage {
  Storage(const std::string& path, std::map<std::string, std::string> passwords)
      : database(path),
        accounts(database, std::move(passwords)),
        settings(database),
        notifications(database),
        captures(database, notifications),
        circles(database),
        calendar(database) {}

  Database database;
  Accounts accounts;
  SettingsStore settings;
  Notifications notifications;
  Captures captures;
  Circles circles;
  Calendar calendar;
};

}  // namespace navora::service
