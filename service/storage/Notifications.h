#pragma once

#include <string>

#include "service/storage/Database.h"
#include "service/support/Json.h"

namespace navora::service {

// Each user's notifications. An item is a JSON object with the members "id", "kind", "read",
// "resolved", "dismissed", "createdAt", "lead", "text", "data" and the ids of its subject
// ("captureId", "roomId", "circleId", "eventUid").
class Notifications {
 public:
  explicit Notifications(Database& database) : database_(database) {}

  // Adds an item; missing common members are filled in.
  Json add(const std::string& userId, Json item);

  // Returns the newest hundred, newest first.
  Json list(const std::string& userId);

  // Returns false if the user has no item with this id.
  bool markRead(const std::string& userId, const std::string& id);
  void markAllRead(const std::string& userId);

  // Marks the items about a deleted note as resolved.
  void resolveCapture(const std::string& userId, const std::string& captureId);

 private:
  template <typename Change>
  void changeEach(const std::string& userId, const Change& change);

  Database& database_;
};

}  // namespace navora::service
