#pragma once

#include <string>

#include "service/storage/Database.h"
#include "service/support/Json.h"

namespace navora::service {

// The user's events: a date ("2026-03-09"), a time ("14:30", or empty for the whole day) and a
// title.
class Calendar {
 public:
  explicit Calendar(Database& database) : database_(database) {}

  // Returns the events of a month ("2026-03") by date and time.
  Json list(const std::string& userId, const std::string& month);

  // Returns the new event.
  Json add(const std::string& userId, const std::string& date, const std::string& time,
           const std::string& title);

  // Returns false if the user has no such event.
  bool remove(const std::string& userId, const std::string& uid);

 private:
  Database& database_;
};

}  // namespace navora::service
