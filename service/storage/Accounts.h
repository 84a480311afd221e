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

/// Who may sign in, and who is signed in. Passwords come from the command line and are kept in
/// memory only; users and sessions live in the database.
class Accounts {
 public:
  static constexpr Milliseconds sessionLifetime = Milliseconds{30} * 24 * 60 * 60 * 1000;

  /// `passwords`: from a user's name to the password.
  Accounts(Database& database, std::map<std::string, std::string> passwords);

  /// The user of a name that has an account; made on first use.
  User user(const std::string& name);

  /// Opens a session and returns its token, or nothing when name and password do not match.
  std::optional<std::string> signIn(const std::string& name, const std::string& password);

  std::optional<User> sessionUser(const std::string& token);
  void signOut(const std::string& token);
  void signEverybodyOut();
  /// Makes every session one of this user.
  void moveSessions(const User& user);

 private:
  Database& database_;
  std::map<std::string, std::string> passwords_;
};

}  // namespace navora::service
