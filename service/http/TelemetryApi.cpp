#include "http/Routes.h"

namespace navora::service {
namespace {

constexpr std::size_t batchLimit = 100;

}  // namespace

void TelemetryCounts::add(const std::string& event) {
  const std::lock_guard lock(mutex_);
  ++counts_[event];
}

std::map<std::string, std::size_t> TelemetryCounts::read() const {
  const std::lock_guard lock(mutex_);
  return counts_;
}

void addTelemetryRoutes(Api& api, TelemetryCounts& counts) {
  api.post("/api/telemetry", [&counts](ApiCall& call) {
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
      counts.add(event["event"].get<std::string>());
    call.reply({{"accepted", events.size()}}, 202);
  });
}

}  // namespace navora::service
