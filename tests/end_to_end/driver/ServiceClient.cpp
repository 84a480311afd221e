#include "end_to_end/driver/ServiceClient.h"

#include "end_to_end/driver/PageDriver.h"

namespace navora::driver {

namespace {

void requireSuccess(const HttpReply& reply, const std::string& what) {
  if (reply.status >= 200 && reply.status < 300) return;
  throw TestError("The service answered " + std::to_string(reply.status) + " to " + what + ": " +
                  reply.body);
}

RecordedRequest recorded(const Json& entry) {
  RecordedRequest request;
  request.sequence = entry.at("sequence");
  request.method = entry.at("method");
  request.target = entry.at("target");
  request.body = entry.at("body");
  for (const Json& header : entry.at("headers")) {
    request.headers.emplace_back(header.at(0), header.at(1));
  }
  return request;
}

}  // namespace

std::vector<RecordedRequest> ServiceClient::requests(const std::string& method,
                                                     const std::string& path) {
  const HttpReply reply = http_.get("/__test/requests");
  requireSuccess(reply, "the question for its requests");
  std::vector<RecordedRequest> found;
  for (const Json& entry : Json::parse(reply.body)) {
    RecordedRequest request = recorded(entry);
    if ((method.empty() || request.method == method) && (path.empty() || request.path() == path)) {
      found.push_back(std::move(request));
    }
  }
  return found;
}

void ServiceClient::clearRequests() {
  requireSuccess(http_.request("DELETE", "/__test/requests"), "the clearing of its requests");
}

std::vector<RecordedRequest> ServiceClient::waitForRequests(const std::string& method,
                                                            const std::string& path,
                                                            std::size_t count,
                                                            std::chrono::milliseconds timeout) {
  std::vector<RecordedRequest> found;
  waitUntil(
      [&] {
        found = requests(method, path);
        return found.size() >= count;
      },
      "the service has received " + method + " " + path + " " + std::to_string(count) + " times",
      timeout, [this] { return describe(requests()); });
  return found;
}

void ServiceClient::post(const std::string& path, const Json& body) {
  requireSuccess(http_.sendJson("POST", path, body), "POST " + path + " " + body.dump());
}

void ServiceClient::addFault(const std::string& method, const std::string& path, const Json& action,
                             int times) {
  Json rule{{"path", path}, {"times", times}, {"action", action}};
  if (!method.empty()) rule["method"] = method;
  post("/__test/faults", rule);
}

void ServiceClient::clearFaults() {
  requireSuccess(http_.request("DELETE", "/__test/faults"), "the clearing of its faults");
}

void ServiceClient::signEverybodyOut() {
  post("/__test/sessions/clear", Json::object());
}

void ServiceClient::changeSettings(const Json& changes) {
  post("/__test/settings", changes);
}

Json ServiceClient::addNotification(const Json& notification) {
  const HttpReply reply = http_.sendJson("POST", "/__test/notifications", notification);
  requireSuccess(reply, "a new notification");
  return Json::parse(reply.body);
}

Json ServiceClient::ask(const std::string& path) {
  const HttpReply reply = http_.get(path);
  requireSuccess(reply, "GET " + path);
  return Json::parse(reply.body);
}

Json ServiceClient::telemetry() {
  return ask("/__test/telemetry");
}

Json ServiceClient::telemetryEvents() {
  return ask("/__test/telemetry/events");
}

Json ServiceClient::captures(const std::string& account) {
  return ask("/__test/captures" + (account.empty() ? "" : "?account=" + account));
}

std::string ServiceClient::switchAccount(const std::string& account) {
  const HttpReply reply =
      http_.sendJson("POST", "/__test/sessions/account?account=" + account, Json::object());
  requireSuccess(reply, "the switch to the account " + account);
  return Json::parse(reply.body).at("id");
}

void ServiceClient::setCookies(PageDriver& page, const std::vector<std::string>& cookies) {
  const Json status =
      page.evaluate("const body = JSON.stringify(" + Json(cookies).dump() +
                    ");\nreturn (await fetch('/__test/cookies', {method: 'POST', body})).status");
  if (status != 204) throw TestError("The service did not set the cookies: " + status.dump());
}

}  // namespace navora::driver
