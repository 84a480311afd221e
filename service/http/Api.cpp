#include "service/http/Api.h"

#include <utility>

#include "service/http/RequestOrigin.h"
#include "service/http/SessionCookie.h"

namespace navora::service {

std::optional<Json> ApiCall::object() {
  if (!request.get_header_value("Content-Type").starts_with("application/json")) {
    fail(415, "unsupported_type", "Send the request as application/json.");
    return std::nullopt;
  }
  Json body = Json::parse(request.body, nullptr, false);
  if (!body.is_object()) {
    fail(400, "malformed", "The request is not a JSON object.");
    return std::nullopt;
  }
  return body;
}

void ApiCall::reply(const Json& value, int status) {
  response.status = status;
  response.set_content(jsonText(value), "application/json");
}

void ApiCall::fail(int status, const std::string& code, const std::string& message) {
  Api::fail(response, status, code, message);
}

void Api::fail(httplib::Response& response, int status, const std::string& code,
               const std::string& message) {
  response.status = status;
  response.set_content(jsonText({{"error", {{"code", code}, {"message", message}}}}),
                       "application/json");
}

httplib::Server::Handler Api::guarded(Handler handler) {
  return [this, handler = std::move(handler)](const httplib::Request& request,
                                              httplib::Response& response) {
    const std::optional<User> user = SessionCookie::user(request, accounts_);
    if (!user) {
      fail(response, 401, "signed_out", "Sign in to continue.");
      return;
    }
    if (request.method != "GET" && comesFromAnotherOrigin(request)) {
      fail(response, 403, "foreign_origin", "Another site may not do this.");
      return;
    }
    ApiCall call{request, response, *user};
    handler(call);
  };
}

void Api::get(const std::string& pattern, Handler handler) {
  server_.Get(pattern, guarded(std::move(handler)));
}

void Api::post(const std::string& pattern, Handler handler) {
  server_.Post(pattern, guarded(std::move(handler)));
}

void Api::put(const std::string& pattern, Handler handler) {
  server_.Put(pattern, guarded(std::move(handler)));
}

void Api::patch(const std::string& pattern, Handler handler) {
  server_.Patch(pattern, guarded(std::move(handler)));
}

void Api::remove(const std::string& pattern, Handler handler) {
  server_.Delete(pattern, guarded(std::move(handler)));
}

}  // namespace navora::service
