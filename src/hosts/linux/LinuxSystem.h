#pragma once

#include "hosts/linux/SystemTimeZone.h"
#include "platform/System.h"

namespace navora {

class LinuxSystem final : public System {
 public:
  explicit LinuxSystem(SystemTimeZone timeZone = SystemTimeZone());

  std::optional<std::string> environmentVariable(const std::string& name) const override;
  std::vector<std::string> preferredLanguages() const override;
  std::string timeZoneIdentifier() const override;
  Date now() const override;
  std::string randomUuid() const override;
  // To standard error, which the desktop keeps in its journal.
  void log(const std::string& line) const override;

  std::unique_ptr<ObserverToken> observeTimeZoneChange(std::function<void()> callback) override;
  // Through the login manager, where there is one.
  std::unique_ptr<ObserverToken> observeWake(std::function<void()> callback) override;

 private:
  SystemTimeZone timeZone_;
};

}  // namespace navora
