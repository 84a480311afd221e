#pragma once

#include <functional>
#include <optional>
#include <string>

#include <httplib.h>

#include "service/storage/Storage.h"
#include "service/support/Json.h"

namespace navora::service {

// A request to the JSON API by a signed-in user.
struct ApiCall {
  const httplib::Request& request;
  httplib::Response& response;
  User user;

  // Returns the part of the path that the route's pattern captured.
  std::string captured(std::size_t index = 1) const { return request.matches[index].str(); }

  // Returns the body as a JSON object. Otherwise replies with 400 or 415 and returns nullopt.
  std::optional<Json> object();

  void reply(const Json& value, int status = 200);
  void fail(int status, const std::string& code, const std::string& message);
};

// Registers the routes below "/api/". Each replies with 401 unless the request has a session.
class Api {
 public:
  using Handler = std::function<void(ApiCall&)>;

  Api(httplib::Server& server, Accounts& accounts) : server_(server), accounts_(accounts) {}

  void get(const std::string& pattern, Handler handler);
  void post(const std::string& pattern, Handler handler);
  void put(const std::string& pattern, Handler handler);
  void patch(const std::string& pattern, Handler handler);
  void remove(const std::string& pattern, Handler handler);

  // Replies with an error of the API: {"error": {"code": ..., "message": ...}}.
  static void fail(httplib::Response& response, int status, const std::string& code,
                   const std::string& message);

 private:
  httplib::Server::Handler guarded(Handler handler);

  httplib::Server& server_;
  Accounts& accounts_;
};

}  // namespace navora::service
