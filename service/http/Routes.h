#pragma once

#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>

#include "service/http/Api.h"
#include "service/storage/Storage.h"

namespace navora::service {

// The telemetry events since the start: all are counted, and the most recent are kept.
class TelemetryLog {
 public:
  static constexpr std::size_t mostEvents = 10000;

  // `event` is an object whose "event" is its name.
  void add(const User& user, const Json& event);

  // Returns the number of events by name.
  std::map<std::string, std::size_t> counts() const;

  // Returns the events as received, oldest first, each with the user's name as "account".
  Json events() const;

 private:
  mutable std::mutex mutex_;
  std::map<std::string, std::size_t> counts_;
  std::deque<Json> events_;
};

void addSettingsRoutes(Api& api, Storage& storage);
void addNotificationRoutes(Api& api, Storage& storage);

// The callbacks are called after each addition by the user.
void addCirclesRoutes(Api& api, Storage& storage,
                      std::function<void(const User&, const std::string& roomId)> messageAdded);
void addCalendarRoutes(Api& api, Storage& storage,
                       std::function<void(const User&, const Json& event)> eventAdded);

void addExportRoutes(Api& api, Storage& storage);
void addTelemetryRoutes(Api& api, TelemetryLog& log);

// `jobDelay` is the time that processing a note takes. `jobAdded` is called after each new job.
void addCaptureRoutes(Api& api, Storage& storage, Milliseconds jobDelay,
                      std::function<void()> jobAdded);

// Registers "/login" and "/logout", which take form posts.
void addSignInRoutes(httplib::Server& server, Accounts& accounts,
                     const std::function<void(const httplib::Request&, httplib::Response&,
                                              const std::string& error)>& showLogin);

}  // namespace navora::service
