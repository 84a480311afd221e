#include "service/storage/Circles.h"

#include "service/support/Identifiers.h"
#include "service/support/Time.h"

namespace navora::service {

Json Circles::list(const std::string& userId) {
  Database::Transaction transaction(database_);
  Json circles = Json::array();
  Statement row =
      database_.prepare("SELECT id, name FROM circles WHERE user_id = ? ORDER BY position", userId);
  while (row.step()) {
    circles.push_back({{"id", row.text(0)}, {"name", row.text(1)}, {"rooms", rooms(row.text(0))}});
  }
  transaction.commit();
  return circles;
}

Json Circles::rooms(const std::string& circleId) {
  Json found = Json::array();
  Statement row = database_.prepare(
      "SELECT id, name FROM rooms WHERE circle_id = ? ORDER BY position", circleId);
  while (row.step()) {
    found.push_back(
        {{"id", row.text(0)}, {"name", row.text(1)}, {"messages", messages(row.text(0))}});
  }
  return found;
}

Json Circles::messages(const std::string& roomId) {
  Json found = Json::array();
  Statement row = database_.prepare(
      "SELECT id, author, text, created_at FROM messages WHERE room_id = ? "
      "ORDER BY created_at, rowid",
      roomId);
  while (row.step()) {
    found.push_back({{"id", row.text(0)},
                     {"author", row.text(1)},
                     {"text", row.text(2)},
                     {"createdAt", isoTime(row.integer(3))}});
  }
  return found;
}

std::string Circles::addCircle(const std::string& userId, const std::string& name) {
  Database::Transaction transaction(database_);
  const std::string id = randomUuid();
  database_.run(
      "INSERT INTO circles (id, user_id, name, position) "
      "VALUES (?, ?, ?, (SELECT count(*) FROM circles))",
      id, userId, name);
  transaction.commit();
  return id;
}

std::string Circles::addRoom(const std::string& circleId, const std::string& name) {
  Database::Transaction transaction(database_);
  const std::string id = randomUuid();
  database_.run(
      "INSERT INTO rooms (id, circle_id, name, position) "
      "VALUES (?, ?, ?, (SELECT count(*) FROM rooms))",
      id, circleId, name);
  transaction.commit();
  return id;
}

bool Circles::rename(const std::string& userId, const std::string& circleId,
                     const std::string& name) {
  Database::Transaction transaction(database_);
  const bool renamed = database_.run("UPDATE circles SET name = ? WHERE id = ? AND user_id = ?",
                                     name, circleId, userId) > 0;
  transaction.commit();
  return renamed;
}

std::optional<Json> Circles::addMessage(const std::string& userId, const std::string& roomId,
                                        const std::string& author, const std::string& text) {
  Database::Transaction transaction(database_);
  Statement owner = database_.prepare(
      "SELECT 1 FROM rooms JOIN circles ON circles.id = circle_id "
      "WHERE rooms.id = ? AND user_id = ?",
      roomId, userId);
  std::optional<Json> added;
  if (owner.step()) {
    const std::string id = randomUuid();
    const Milliseconds now = currentTime();
    database_.run(
        "INSERT INTO messages (id, room_id, author, text, created_at) VALUES (?, ?, ?, ?, ?)", id,
        roomId, author, text, now);
    added = Json{{"id", id}, {"author", author}, {"text", text}, {"createdAt", isoTime(now)}};
  }
  transaction.commit();
  return added;
}

}  // namespace navora::service
