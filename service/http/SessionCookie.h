#pragma once

#include <optional>
#include <string>

#include <httplib.h>

#include "service/storage/Accounts.h"

namespace navora::service {

// The cookie that holds a session's token.
class SessionCookie {
 public:
  static constexpr const char* name = "tolvin_session";

  // Returns the token of a request, or an empty string.
  static std::string token(const httplib::Request& request);
  static std::optional<User> user(const httplib::Request& request, Accounts& accounts);

  static void set(httplib::Response& response, const std::string& token);
  static void clear(httplib::Response& response);
};

}  // namespace navora::service
