#include "capture/CaptureTelemetry.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <utility>

namespace navora {
namespace {

constexpr std::size_t maximumEvents = 40;
constexpr std::chrono::seconds flushDelay{2};
constexpr const char* inputEvent = "native_input";

}  // namespace

CaptureTelemetry::CaptureTelemetry(CaptureClient& client, MainQueue& queue, const System& system)
    : client_(client),
      queue_(queue),
      system_(system),
      sessionId_(system.randomUuid()),
      flowId_(system.randomUuid()),
      startedAt_(system.now()) {}

double CaptureTelemetry::millisecondsSinceStart() const {
  return (system_.now() - startedAt_).count() * 1000;
}

void CaptureTelemetry::startNewFlow() {
  flowId_ = system_.randomUuid();
  inputCount_ = 0;
  startedAt_ = system_.now();
}

void CaptureTelemetry::record(const std::string& event, const Json& fields) {
  const auto attempt = attemptFlowId ? attemptFlowId() : std::nullopt;
  Json entry{{"event", event},
             {"flowId", attempt.value_or(flowId_)},
             {"browserSessionId", sessionId_},
             {"surface", "mac_native"},
             {"view", "today"},
             {"seq", ++sequence_},
             {"clientAt", iso8601(system_.now())}};
  entry.update(fields);

  // Collapse consecutive input events into the last one.
  if (event == inputEvent && !events_.empty() && events_.back()["event"] == inputEvent) {
    events_.pop_back();
  }
  if (events_.size() >= maximumEvents) events_.pop_front();
  events_.push_back(std::move(entry));
  scheduleFlush();
}

void CaptureTelemetry::scheduleFlush() {
  if (flushing_) return;
  flushing_ = true;
  flush_ = flush();
}

Task<> CaptureTelemetry::flush() {
  do {
    std::unique_ptr<ObserverToken> timer;
    co_await awaitCallback<void>(
        [this, &timer](Callback<void> done) { timer = queue_.after(flushDelay, std::move(done)); });
    const std::deque<Json> batch = std::exchange(events_, {});
    if (const auto cookie = co_await client_.cookieHeader()) {
      Json body;
      body["events"] = batch;
      co_await client_.postTelemetry(*cookie,
                                     body.dump(-1, ' ', false, Json::error_handler_t::replace));
    }
    // Events recorded during the request wait for a full delay of their own.
  } while (!events_.empty());
  flushing_ = false;
}

}  // namespace navora
