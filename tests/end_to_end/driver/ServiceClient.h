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

// The test controls of the development service. What goes through here is not in its request log.
class ServiceClient {
 public:
  explicit ServiceClient(const std::string& url) : http_(url) {}

  // All requests since the start or the last clearing, or those with this method and path only;
  // empty means any. The path is without the query.
  std::vector<RecordedRequest> requests(const std::string& method = {},
                                        const std::string& path = {});
  void clearRequests();
  // Waits until there are at least `count` such requests and gives them all.
  std::vector<RecordedRequest> waitForRequests(
      const std::string& method, const std::string& path, std::size_t count = 1,
      std::chrono::milliseconds timeout = defaultTimeout());

  // What the service does in place of its proper answer: {"status": 503}, {"delay": ms},
  // {"hang": true}, {"drop": "before"} or "after", {"drop": "during", "bytes": n},
  // {"oversize": bytes}, {"redirect": url}, {"garbage": true}, {"slow": {"bytes", "interval"}}.
  // With "process": true beside "status", "redirect" or "oversize" the service does first what it
  // was asked to. `times` -1 means for ever; an empty method means every method.
  void addFault(const std::string& method, const std::string& path, const Json& action,
                int times = -1);
  void clearFaults();

  // Ends every session: the next request of a page or of the application is a stranger's.
  void signEverybodyOut();
  // Changes settings of the demonstration account behind its back.
  void changeSettings(const Json& changes);
  // Raises a notification for that account and gives it as the service stores it.
  Json addNotification(const Json& notification);
  // How many telemetry events came, by name, and the events themselves, oldest first.
  Json telemetry();
  Json telemetryEvents();

  // The notes of an account, newest first, each with its "idempotencyKey" or null. An empty name is
  // the demonstration account's.
  Json captures(const std::string& account = {});
  // Makes every session one of this account, which need not exist: the cookies stay as they are,
  // and the service knows them as somebody else's. Gives the account's id.
  std::string switchAccount(const std::string& account);
  // Has the service set cookies in the browser of a page of its own, each in the form of a
  // Set-Cookie header: "tolvin_session=x; Path=/api; Max-Age=60".
  void setCookies(PageDriver& page, const std::vector<std::string>& cookies);

 private:
  Json ask(const std::string& path);
  void post(const std::string& path, const Json& body);

  HttpClient http_;
};

}  // namespace navora::driver
