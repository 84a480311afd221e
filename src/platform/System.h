#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/DebugArea.h"
#include "platform/ObserverToken.h"
#include "support/Date.h"

namespace navora {

// Facts about the machine and the user's session, read anew at every call.
class System {
 public:
  virtual ~System() = default;

  virtual std::optional<std::string> environmentVariable(const std::string& name) const = 0;
  // Language tags, most wanted first.
  virtual std::vector<std::string> preferredLanguages() const = 0;
  // IANA identifier of the current time zone, as the system reports it.
  virtual std::string timeZoneIdentifier() const = 0;
  virtual Date now() const = 0;
  // A fresh random UUID (version 4) in its textual form, lower case.
  virtual std::string randomUuid() const = 0;

  // Writes one line to the system log.
  virtual void log(const std::string& line) const = 0;
  // Writes one line to the debug log; nothing is written unless NAVORA_DEBUG names the area.
  virtual void debug(DebugArea area, const std::string& line) const = 0;

  // Callbacks come on the main thread.
  virtual std::unique_ptr<ObserverToken> observeTimeZoneChange(std::function<void()> callback) = 0;
  virtual std::unique_ptr<ObserverToken> observeWake(std::function<void()> callback) = 0;
};

}  // namespace navora
