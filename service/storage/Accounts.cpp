#include "service/storage/Accounts.h"

#include <utility>

#include "service/support/Identifiers.h"

namespace navora::service {

Accounts::Accounts(Database& database, std::map<std::string, std::string> passwords)
    : database_(database), passwords_(std::move(passwords)) {}

User Accounts::user(const std::string& name) {
  Database::Transaction transaction(database_);
  database_.run("INSERT OR IGNORE INTO users (id, name) VALUES (?, ?)", randomUuid(), name);
  Statement row = database_.prepare("SELECT id FROM users WHERE name = ?", name);
  row.step();
  User found{row.text(0), name};
  transaction.commit();
  return found;
}

std::optional<std::string> Accounts::signIn(const std::string& name, const std::string& password) {
  const auto account = passwords_.find(name);
  if (account == passwords_.end() || account->second != password) return std::nullopt;
  Database::Transaction transaction(database_);
  std::string token = randomToken();
  const Milliseconds now = currentTime();
  database_.run("DELETE FROM sessions WHERE expires_at <= ?", now);
  database_.run("INSERT INTO sessions (token, user_id, expires_at) VALUES (?, ?, ?)", token,
                user(name).id, now + sessionLifetime);
  transaction.commit();
  return token;
}

std::optional<User> Accounts::sessionUser(const std::string& token) {
  Database::Transaction transaction(database_);
  Statement row = database_.prepare(
      "SELECT users.id, users.name FROM sessions JOIN users ON users.id = sessions.user_id "
      "WHERE token = ? AND expires_at > ?",
      token, currentTime());
  std::optional<User> found;
  if (row.step()) found = User{row.text(0), row.text(1)};
  transaction.commit();
  return found;
}

void Accounts::signOut(const std::string& token) {
  Database::Transaction transaction(database_);
  database_.run("DELETE FROM sessions WHERE token = ?", token);
  transaction.commit();
}

void Accounts::signEverybodyOut() {
  Database::Transaction transaction(database_);
  database_.run("DELETE FROM sessions");
  transaction.commit();
}

void Accounts::moveSessions(const User& user) {
  Database::Transaction transaction(database_);
  database_.run("UPDATE sessions SET user_id = ?", user.id);
  transaction.commit();
}

}  // namespace navora::service
