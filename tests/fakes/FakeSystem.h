#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "fakes/EventLog.h"
#include "fakes/FakeObservers.h"
#include "platform/System.h"

namespace navora {

// A system whose facts and events come from the test.
class FakeSystem final : public System {
 public:
  explicit FakeSystem(EventLog& log) : log_(log) {}

  std::map<std::string, std::string> environment;
  std::vector<std::string> languages;
  std::string timeZone = "Europe/Moscow";
  Date time = dateFromSecondsSince1970(1'700'000'000);

  mutable std::vector<std::string> logged;
  // Every line of the debug log as "area: line", whether or not the area is turned on.
  mutable std::vector<std::string> debugged;

  // The number in the next UUID, incremented with each.
  mutable int nextUuid = 1;

  // Called by observeWake(): the application is then starting, with a window and a page but without
  // any feature.
  std::function<void()> onObserveWake;

  // Acts as a change of the system's time zone.
  void changeTimeZone(std::string identifier);
  void wake() { wakeObservers_.notify(); }

  std::size_t timeZoneObserverCount() const { return timeZoneObservers_.count(); }
  std::size_t wakeObserverCount() const { return wakeObservers_.count(); }

  std::optional<std::string> environmentVariable(const std::string& name) const override;
  std::vector<std::string> preferredLanguages() const override { return languages; }
  std::string timeZoneIdentifier() const override { return timeZone; }
  // Knows a few names.
  std::optional<std::string> asciiHostName(const std::string& host) const override;
  Date now() const override { return time; }
  std::string randomUuid() const override;
  void log(const std::string& line) const override { logged.push_back(line); }
  void debug(DebugArea area, const std::string& line) const override {
    debugged.push_back(std::string(debugAreaName(area)) + ": " + line);
  }
  std::unique_ptr<ObserverToken> observeTimeZoneChange(std::function<void()> callback) override;
  std::unique_ptr<ObserverToken> observeWake(std::function<void()> callback) override;

 private:
  EventLog& log_;
  FakeObservers timeZoneObservers_;
  FakeObservers wakeObservers_;
};

}  // namespace navora
