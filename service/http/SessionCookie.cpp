#include "service/http/SessionCookie.h"

#include <sstream>

#include "service/support/Text.h"

namespace navora::service {

std::string SessionCookie::token(const httplib::Request& request) {
  std::istringstream pairs(request.get_header_value("Cookie"));
  const std::string prefix = std::string(name) + "=";
  for (std::string pair; std::getline(pairs, pair, ';');) {
    const std::string cookie = trimmed(pair);
    if (cookie.starts_with(prefix)) return cookie.substr(prefix.size());
  }
  return {};
}

std::optional<User> SessionCookie::user(const httplib::Request& request, Accounts& accounts) {
  const std::string value = token(request);
  return value.empty() ? std::nullopt : accounts.sessionUser(value);
}

void SessionCookie::set(httplib::Response& response, const std::string& token) {
  response.set_header("Set-Cookie", std::string(name) + "=" + token +
                                        "; Path=/; HttpOnly; SameSite=Lax; Max-Age=" +
                                        std::to_string(Accounts::sessionLifetime / 1000));
}

void SessionCookie::clear(httplib::Response& response) {
  response.set_header("Set-Cookie",
                      std::string(name) + "=; Path=/; HttpOnly; SameSite=Lax; Max-Age=0");
}

}  // namespace navora::service
