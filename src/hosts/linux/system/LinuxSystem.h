#pragma once

#include "hosts/linux/system/SystemTimeZone.h"
#include "platform/System.h"

namespace navora {

class LinuxSystem final : public System {
 public:
  // Calls the callback after each resume from sleep, until the token is destroyed.
  using ObserveResume = std::function<std::unique_ptr<ObserverToken>(std::function<void()>)>;

  explicit LinuxSystem(ObserveResume observeResume, SystemTimeZone timeZone = SystemTimeZone());

  std::optional<std::string> environmentVariable(const std::string& name) const override;
  std::vector<std::string> preferredLanguages() const override;
  std::string timeZoneIdentifier() const override;
  Date now() const override;
  std::string randomUuid() const override;
  std::optional<std::string> asciiHostName(const std::string& host) const override;
  // Writes to standard error, which a systemd session keeps in the journal.
  void log(const std::string& line) const override;
  void debug(DebugArea area, const std::string& line) const override;

  std::unique_ptr<ObserverToken> observeTimeZoneChange(std::function<void()> callback) override;
  std::unique_ptr<ObserverToken> observeWake(std::function<void()> callback) override;

 private:
  ObserveResume observeResume_;
  SystemTimeZone timeZone_;
};

}  // namespace navora
