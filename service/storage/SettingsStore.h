#pragma once

#include <string>

#include "service/storage/Database.h"
#include "service/support/Json.h"

namespace navora::service {

// Each user's settings, with the defaults of those never set.
class SettingsStore {
 public:
  explicit SettingsStore(Database& database) : database_(database) {}

  Json read(const std::string& userId);

  // Stores changes that `SettingsRules` has accepted; returns the new settings.
  Json change(const std::string& userId, const Json& changes);

 private:
  Database& database_;
};

}  // namespace navora::service
