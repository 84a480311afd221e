#pragma once

#include <optional>
#include <string>

#include "service/storage/Database.h"
#include "service/support/Json.h"

namespace navora::service {

// The user's circles, their rooms and the messages in them.
class Circles {
 public:
  explicit Circles(Database& database) : database_(database) {}

  // Returns the circles in order, each with its rooms and their messages, oldest first.
  Json list(const std::string& userId);

  std::string addCircle(const std::string& userId, const std::string& name);
  std::string addRoom(const std::string& circleId, const std::string& name);

  // Returns false if the user has no such circle.
  bool rename(const std::string& userId, const std::string& circleId, const std::string& name);

  // Returns the new message, or nullopt if the user has no such room.
  std::optional<Json> addMessage(const std::string& userId, const std::string& roomId,
                                 const std::string& author, const std::string& text);

 private:
  Json rooms(const std::string& circleId);
  Json messages(const std::string& roomId);

  Database& database_;
};

}  // namespace navora::service
