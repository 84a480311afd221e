#pragma once

#include "hosts/linux/system/SystemTimeZone.h"
#include "platform/System.h"

namespace navora {

class LinuxSystem final : public System {
 public:
  // Observes the end of a sleep until the token is destroyed.
  using ObserveResume = std::function<std::unique_ptr<ObserverToken>(std::function<void()>)>;

  explicit LinuxSystem(ObserveResume observeResume, SystemTimeZone timeZone = SystemTimeZone());

  std::optional<std::string> environmentVariable(const std::string& name) const override;
  std::vector<std::string> preferredLanguages() const override;
  std::string timeZoneIdentifier() const override;
  Date now() const override;
  std::string randomUuid() const override;
  // To standard error, which the desktop keeps in its journal.
  void log(const std::string& line) const override;
  void debug(DebugArea area, const std::string& line) const override;

  std::unique_ptr<ObserverToken> observeTimeZoneChange(std::function<void()> callback) override;
  std::unique_ptr<ObserverToken> observeWake(std::function<void()> callback) override;

 private:
  ObserveResume observeResume_;
  SystemTimeZone timeZone_;
};

}  // namespace navora
