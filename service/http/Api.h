#pragma once

#include <functional>
#include <optional>
#include <string>

#include <httplib.h>

#include "service/storage/Storage.h"
#include "service/support/Json.h"

namespace navora::service {

/// One request to the JSON interface by a signed-in user.
struct ApiCall {
  const httplib::Request& request;
  httplib::Response& response;
  User user;

  /// The part of the path that the route's pattern captured.
  std::string captured(std::size_t index = 1) const { return request.matches[index].str(); }

  /// The body as a JSON object. When it is none, answers 400 or 415 and returns nothing.
  std::optional<Json> object();

  void reply(const Json& value, int status = 200);
  void fail(int status, const std::string& code, const std::string& message);
};

/// Registers the routes below "/api/". Every one of them needs a session; without one the answer
/// is 401.
class Api {
 public:
  using Handler = std::function<void(ApiCall&)>;

  Api(httplib::Server& server, Accounts& accounts) : server_(server), accounts_(accounts) {}

  void get(const std::string& pattern, Handler handler);
  void post(const std::string& pattern, Handler handler);
  void put(const std::string& pattern, Handler handler);
  void patch(const std::string& pattern, Handler handler);
  void remove(const std::string& pattern, Handler handler);

  /// An error answer of the interface: {"error": {"code": ..., "message": ...}}.
  static void fail(httplib::Response& response, int status, const std::string& code,
                   const std::string& message);

 private:
  httplib::Server::Handler guarded(Handler handler);

  httplib::Server& server_;
  Accounts& accounts_;
};

}  // namespace navora::service
