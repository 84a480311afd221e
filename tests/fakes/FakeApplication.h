#pragma once

#include "fakes/EventLog.h"
#include "platform/Application.h"

namespace navora {

class FakeApplication final : public Application {
 public:
  explicit FakeApplication(EventLog& log) : log_(log) {}

  void activateIgnoringOtherApplications() override { log_.record("application.activate"); }

 private:
  EventLog& log_;
};

}  // namespace navora
