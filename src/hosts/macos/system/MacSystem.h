#pragma once

#include "platform/System.h"

namespace navora {

class MacSystem final : public System {
 public:
  std::optional<std::string> environmentVariable(const std::string& name) const override;
  std::vector<std::string> preferredLanguages() const override;
  std::string timeZoneIdentifier() const override;
  Date now() const override;
  std::optional<std::string> asciiHostName(const std::string& host) const override;
  std::string randomUuid() const override;
  void log(const std::string& line) const override;
  void debug(DebugArea area, const std::string& line) const override;
  std::unique_ptr<ObserverToken> observeTimeZoneChange(std::function<void()> callback) override;
  std::unique_ptr<ObserverToken> observeWake(std::function<void()> callback) override;
};

}  // namespace navora
