#include "fakes/FakeSystem.h"

#include <utility>

namespace navora {

void FakeSystem::changeTimeZone(std::string identifier) {
  timeZone = std::move(identifier);
  timeZoneObservers_.notify();
}

std::optional<std::string> FakeSystem::environmentVariable(const std::string& name) const {
  const auto variable = environment.find(name);
  if (variable == environment.end()) return std::nullopt;
  return variable->second;
}

std::optional<std::string> FakeSystem::asciiHostName(const std::string& host) const {
  static const std::map<std::string, std::string> names{
      {"navora.example", "navora.example"},        {"bücher.example", "xn--bcher-kva.example"},
      {"BÜCHER.example", "xn--bcher-kva.example"}, {"straße.example", "xn--strae-oqa.example"},
      {"пример.example", "xn--e1afmkfd.example"},
  };
  const auto found = names.find(host);
  return found == names.end() ? std::nullopt : std::optional(found->second);
}

std::string FakeSystem::randomUuid() const {
  const std::string number = std::to_string(nextUuid++);
  const std::string prefix = "00000000-0000-4000-8000-abcdef000000";
  return prefix.substr(0, prefix.size() - number.size()) + number;
}

std::unique_ptr<ObserverToken> FakeSystem::observeTimeZoneChange(std::function<void()> callback) {
  log_.record("system.observeTimeZoneChange");
  return timeZoneObservers_.add(std::move(callback));
}

std::unique_ptr<ObserverToken> FakeSystem::observeWake(std::function<void()> callback) {
  log_.record("system.observeWake");
  if (onObserveWake) onObserveWake();
  return wakeObservers_.add(std::move(callback));
}

}  // namespace navora
