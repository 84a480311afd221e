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

// Reports to the service how the capture is used: small batches, at best effort, never in the way.
class CaptureTelemetry {
 public:
  // All must outlive this object.
  CaptureTelemetry(CaptureClient& client, MainQueue& queue, const System& system);

  // One per run of the application.
  const std::string& sessionId() const { return sessionId_; }
  // One per note.
  const std::string& flowId() const { return flowId_; }
  // Changes of the text in this flow.
  int inputCount() const { return inputCount_; }
  double millisecondsSinceStart() const;

  // While a note is on its way, its events keep the flow that it began with.
  std::function<std::optional<std::string>()> attemptFlowId;

  void startNewFlow();
  // The user begins only now.
  void restartClock() { startedAt_ = system_.now(); }
  int countInput() { return ++inputCount_; }

  // `fields` win over those that every event has.
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
