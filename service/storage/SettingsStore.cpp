#include "service/storage/SettingsStore.h"

#include "service/storage/SettingsRules.h"

namespace navora::service {

Json SettingsStore::read(const std::string& userId) {
  Database::Transaction transaction(database_);
  Json settings = SettingsRules::defaults();
  Statement row = database_.prepare("SELECT value FROM settings WHERE user_id = ?", userId);
  if (row.step()) settings.update(Json::parse(row.text(0), nullptr, false));
  transaction.commit();
  return settings;
}

Json SettingsStore::change(const std::string& userId, const Json& changes) {
  Database::Transaction transaction(database_);
  Json settings = read(userId);
  settings.update(changes);
  database_.run("INSERT OR REPLACE INTO settings (user_id, value) VALUES (?, ?)", userId,
                jsonText(settings));
  transaction.commit();
  return settings;
}

}  // namespace navora::service
