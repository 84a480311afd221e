#pragma once

#include <map>
#include <optional>
#include <string>

#include "service/storage/Database.h"
#include "service/support/Time.h"

namespace navora::service {

struct User {
  std::string id;
  std::string name;
};

// The accounts and the open sessions. Passwords come from the command line and are kept in memory
// only; users and sessions are stored in the database.
class Accounts {
 public:
  static constexpr Milliseconds sessionLifetime = Milliseconds{30} * 24 * 60 * 60 * 1000;

  // `passwords` maps a user's name to the password.
  Accounts(Database& database, std::map<std::string, std::string> passwords);

  // Returns the user of an account; created on first use.
  User user(const std::string& name);

  // Opens a session and returns its token, or nullopt if the name and the password do not match.
  std::optional<std::string> signIn(const std::string& name, const std::string& password);

  std::optional<User> sessionUser(const std::string& token);
  void signOut(const std::string& token);
  void signEverybodyOut();
  // Assigns every session to this user.
  void moveSessions(const User& user);

 private:
  Database& database_;
  std::map<std::string, std::string> passwords_;
};

}  // namespace navora::service
