#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "capture/CaptureClient.h"
#include "platform/MainQueue.h"
#include "platform/System.h"
#include "support/Date.h"
#include "support/Json.h"
#include "support/Task.h"

namespace navora {

// Reports to the service how the capture panel is used, in small batches and with best effort: a
// failure drops the batch and never delays the user.
class CaptureTelemetry {
 public:
  // The references must outlive this object.
  CaptureTelemetry(CaptureClient& client, MainQueue& queue, const System& system);

  // The id of this run of the application.
  const std::string& sessionId() const { return sessionId_; }
  // The id of the note being written.
  const std::string& flowId() const { return flowId_; }
  // The number of text changes in the current flow.
  int inputCount() const { return inputCount_; }
  double millisecondsSinceStart() const;

  // Returns the flow id of the attempt that is kept for sending, or nullopt if there is none. While
  // there is one, events carry its id instead of `flowId`.
  std::function<std::optional<std::string>()> attemptFlowId;

  void startNewFlow();
  // Continues the flow of an earlier process.
  void continueFlow(std::string flowId) { flowId_ = std::move(flowId); }
  // Sets the start of the current flow to now.
  void restartClock() { startedAt_ = system_.now(); }
  int countInput() { return ++inputCount_; }

  // Queues an event and schedules a flush. `fields` override the members common to all events.
  void record(const std::string& event, const Json& fields = Json::object());

 private:
  void scheduleFlush();
  Task<> flush();

  CaptureClient& client_;
  MainQueue& queue_;
  const System& system_;
  const std::string sessionId_;
  std::string flowId_;
  int sequence_ = 0;
  int inputCount_ = 0;
  Date startedAt_;
  std::deque<Json> events_;
  bool flushing_ = false;
  Task<> flush_;
};

}  // namespace navora
