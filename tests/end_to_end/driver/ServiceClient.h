#pragma once

#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/support/HttpClient.h"
#include "tests/support/HttpMessage.h"
#include "tests/support/Wait.h"

namespace navora::driver {

using Json = nlohmann::json;

class PageDriver;

// The test controls of the development service. Their requests are not in its log.
class ServiceClient {
 public:
  explicit ServiceClient(const std::string& url) : http_(url) {}

  // Returns the requests since the start or the last clearing with this method and path (without
  // query); empty matches any.
  std::vector<RecordedRequest> requests(const std::string& method = {},
                                        const std::string& path = {});
  void clearRequests();
  // Waits for at least `count` such requests and returns them all.
  std::vector<RecordedRequest> waitForRequests(
      const std::string& method, const std::string& path, std::size_t count = 1,
      std::chrono::milliseconds timeout = defaultTimeout());

  // Adds a fault that replaces the service's reply: {"status": 503}, {"delay": ms}, {"hang": true},
  // {"drop": "before"} or "after", {"drop": "during", "bytes": n}, {"oversize": bytes},
  // {"redirect": url}, {"garbage": true}, {"slow": {"bytes", "interval"}}. With "process": true
  // beside "status", "redirect", "oversize" or "hang" the request is processed first. It applies
  // `times` times, or without limit if -1; an empty method matches any.
  void addFault(const std::string& method, const std::string& path, const Json& action,
                int times = -1);
  void clearFaults();

  // Ends every session, so that later requests are not signed in.
  void signEverybodyOut();
  // Changes stored settings of the demo account.
  void changeSettings(const Json& changes);
  // Adds a notification for that account and returns it as stored.
  Json addNotification(const Json& notification);
  // Return the number of telemetry events by name, and the events, oldest first.
  Json telemetry();
  Json telemetryEvents();

  // Returns the notes of an account, newest first, each with its "idempotencyKey" or null. An empty
  // name is that of the demo account.
  Json captures(const std::string& account = {});
  // Assigns every session to this account, which is created if needed, without changing cookies.
  // Returns the account's id.
  std::string switchAccount(const std::string& account);
  // Has the service set cookies in the web view of one of its pages, each given as a Set-Cookie
  // header: "tolvin_session=x; Path=/api; Max-Age=60".
  void setCookies(PageDriver& page, const std::vector<std::string>& cookies);

 private:
  Json ask(const std::string& path);
  void post(const std::string& path, const Json& body);

  HttpClient http_;
};

}  // namespace navora::driver
