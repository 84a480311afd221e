#pragma once

#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "end_to_end/driver/HttpClient.h"
#include "end_to_end/driver/RecordedRequest.h"
#include "end_to_end/driver/Wait.h"

namespace navora::driver {

using Json = nlohmann::json;

// The test controls of the development service. What goes through here is not in its request log.
class ServiceClient {
 public:
  explicit ServiceClient(std::string url) : http_(std::move(url)) {}

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
  // `times` -1 means for ever; an empty method means every method.
  void addFault(const std::string& method, const std::string& path, const Json& action,
                int times = -1);
  void clearFaults();

  // Ends every session: the next request of a page or of the application is a stranger's.
  void signEverybodyOut();
  // Changes settings of the demonstration account behind its back.
  void changeSettings(const Json& changes);
  // Raises a notification for that account and gives it as the service stores it.
  Json addNotification(const Json& notification);
  Json telemetry();

 private:
  void post(const std::string& path, const Json& body);

  HttpClient http_;
};

}  // namespace navora::driver
