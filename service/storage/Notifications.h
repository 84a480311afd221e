#pragma once

#include <string>

#include "service/storage/Database.h"
#include "service/support/Json.h"

namespace navora::service {

/// Each user's notifications. An item is a JSON object with the members "id", "kind", "read",
/// "resolved", "dismissed", "createdAt", "lead", "text", "data" and what it points to
/// ("captureId", "roomId", "circleId", "eventUid").
class Notifications {
 public:
  explicit Notifications(Database& database) : database_(database) {}

  /// Adds an item; members that every item has and this one lacks are filled in.
  Json add(const std::string& userId, Json item);

  /// The newest hundred, newest first.
  Json list(const std::string& userId);

  /// False when the user has no item of this id.
  bool markRead(const std::string& userId, const std::string& id);
  void markAllRead(const std::string& userId);

  /// Marks everything that points to a note as resolved, because the note is gone.
  void resolveCapture(const std::string& userId, const std::string& captureId);

 private:
  template <typename Change>
  void changeEach(const std::string& userId, const Change& change);

  Database& database_;
};

}  // namespace navora::service
