#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "http/Api.h"
#include "storage/Storage.h"

namespace navora::service {

/// How many telemetry events arrived since start, by name.
class TelemetryCounts {
 public:
  void add(const std::string& event);
  std::map<std::string, std::size_t> read() const;

 private:
  mutable std::mutex mutex_;
  std::map<std::string, std::size_t> counts_;
};

void addSettingsRoutes(Api& api, Storage& storage);
void addNotificationRoutes(Api& api, Storage& storage);
void addCirclesRoutes(Api& api, Storage& storage);
void addCalendarRoutes(Api& api, Storage& storage);
void addExportRoutes(Api& api, Storage& storage);
void addTelemetryRoutes(Api& api, TelemetryCounts& counts);

/// `jobDelay`: how long the processing of a note takes. `jobAdded` is called after each new job.
void addCaptureRoutes(Api& api, Storage& storage, Milliseconds jobDelay,
                      std::function<void()> jobAdded);

/// "/login" and "/logout" as form posts.
void addSignInRoutes(httplib::Server& server, Accounts& accounts,
                     const std::function<void(const httplib::Request&, httplib::Response&,
                                              const std::string& error)>& showLogin);

}  // namespace navora::service
