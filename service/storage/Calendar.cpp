#include "service/storage/Calendar.h"

#include "service/support/Identifiers.h"

namespace navora::service {

Json Calendar::list(const std::string& userId, const std::string& month) {
  Database::Transaction transaction(database_);
  Json events = Json::array();
  Statement row = database_.prepare(
      "SELECT uid, date, time, title FROM events WHERE user_id = ? AND substr(date, 1, 7) = ? "
      "ORDER BY date, time, title",
      userId, month);
  while (row.step()) {
    events.push_back({{"uid", row.text(0)},
                      {"date", row.text(1)},
                      {"time", row.text(2)},
                      {"title", row.text(3)}});
  }
  transaction.commit();
  return events;
}

Json Calendar::add(const std::string& userId, const std::string& date, const std::string& time,
                   const std::string& title) {
  Database::Transaction transaction(database_);
  const std::string uid = randomUuid();
  database_.run("INSERT INTO events (uid, user_id, date, time, title) VALUES (?, ?, ?, ?, ?)", uid,
                userId, date, time, title);
  transaction.commit();
  return {{"uid", uid}, {"date", date}, {"time", time}, {"title", title}};
}

bool Calendar::remove(const std::string& userId, const std::string& uid) {
  Database::Transaction transaction(database_);
  const bool removed =
      database_.run("DELETE FROM events WHERE uid = ? AND user_id = ?", uid, userId) > 0;
  transaction.commit();
  return removed;
}

}  // namespace navora::service
