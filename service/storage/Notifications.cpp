#include "service/storage/Notifications.h"

#include <utility>
#include <vector>

#include "service/support/Identifiers.h"
#include "service/support/Time.h"

namespace navora::service {

Json Notifications::add(const std::string& userId, Json item) {
  const Json completed{{"id", randomUuid()},
                       {"read", false},
                       {"resolved", false},
                       {"dismissed", false},
                       {"createdAt", isoTime(currentTime())}};
  for (const auto& [name, value] : completed.items()) {
    if (!item.contains(name)) item[name] = value;
  }
  Database::Transaction transaction(database_);
  const std::string id = item["id"].is_string() ? item["id"].get<std::string>() : std::string();
  database_.run("INSERT INTO notifications (user_id, id, item) VALUES (?, ?, ?)", userId, id,
                jsonText(item));
  transaction.commit();
  return item;
}

Json Notifications::list(const std::string& userId) {
  Database::Transaction transaction(database_);
  Json items = Json::array();
  Statement row = database_.prepare(
      "SELECT item FROM notifications WHERE user_id = ? ORDER BY sequence DESC LIMIT 100", userId);
  while (row.step())
    items.push_back(Json::parse(row.text(0)));
  transaction.commit();
  return items;
}

template <typename Change>
void Notifications::changeEach(const std::string& userId, const Change& change) {
  Database::Transaction transaction(database_);
  std::vector<std::pair<std::int64_t, Json>> changed;
  Statement row =
      database_.prepare("SELECT sequence, item FROM notifications WHERE user_id = ?", userId);
  while (row.step()) {
    Json item = Json::parse(row.text(1));
    if (change(item)) changed.emplace_back(row.integer(0), std::move(item));
  }
  for (const auto& [sequence, item] : changed) {
    database_.run("UPDATE notifications SET item = ? WHERE sequence = ?", jsonText(item), sequence);
  }
  transaction.commit();
}

bool Notifications::markRead(const std::string& userId, const std::string& id) {
  bool found = false;
  changeEach(userId, [&](Json& item) {
    if (item["id"] != id) return false;
    found = true;
    item["read"] = true;
    return true;
  });
  return found;
}

void Notifications::markAllRead(const std::string& userId) {
  changeEach(userId, [](Json& item) {
    item["read"] = true;
    return true;
  });
}

void Notifications::resolveCapture(const std::string& userId, const std::string& captureId) {
  changeEach(userId, [&](Json& item) {
    if (item.value("captureId", "") != captureId) return false;
    item["resolved"] = true;
    return true;
  });
}

}  // namespace navora::service
