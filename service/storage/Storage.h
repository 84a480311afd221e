#pragma once

#include <map>
#include <string>
#include <utility>

#include "service/storage/Accounts.h"
#include "service/storage/Calendar.h"
#include "service/storage/Captures.h"
#include "service/storage/Circles.h"
#include "service/storage/Database.h"
#include "service/storage/Notifications.h"
#include "service/storage/SettingsStore.h"

namespace navora::service {

// The stores of the service, over one database.
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
