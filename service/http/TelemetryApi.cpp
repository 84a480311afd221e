#include "service/http/Routes.h"

namespace navora::service {
namespace {

constexpr std::size_t batchLimit = 100;

}  // namespace

void TelemetryLog::add(const User& user, const Json& event) {
  const std::lock_guard lock(mutex_);
  ++counts_[event["event"].get<std::string>()];
  events_.push_back(event);
  events_.back()["account"] = user.name;
  if (events_.size() > mostEvents) events_.pop_front();
}

std::map<std::string, std::size_t> TelemetryLog::counts() const {
  const std::lock_guard lock(mutex_);
  return counts_;
}

Json TelemetryLog::events() const {
  const std::lock_guard lock(mutex_);
  return Json(events_);
}

void addTelemetryRoutes(Api& api, TelemetryLog& log) {
  api.post("/api/telemetry", [&log](ApiCall& call) {
    const auto body = call.object();
    if (!body) return;
    const Json events = body->value("events", Json());
    bool valid = events.is_array() && events.size() <= batchLimit;
    for (std::size_t index = 0; valid && index < events.size(); ++index) {
      valid = events[index].is_object() && textMember(events[index], "event").has_value();
    }
    if (!valid) {
      call.fail(422, "invalid_events", "The events are not valid.");
      return;
    }
    for (const Json& event : events)
      log.add(call.user, event);
    call.reply({{"accepted", events.size()}}, 202);
  });
}

}  // namespace navora::service
