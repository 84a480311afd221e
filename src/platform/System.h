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

// Facts about the machine and the user's session, read afresh by each call.
class System {
 public:
  virtual ~System() = default;

  virtual std::optional<std::string> environmentVariable(const std::string& name) const = 0;
  // Returns the user's preferred languages as language tags, in descending order of preference.
  virtual std::vector<std::string> preferredLanguages() const = 0;
  // Returns the IANA identifier of the current time zone, as the system reports it.
  virtual std::string timeZoneIdentifier() const = 0;
  virtual Date now() const = 0;
  // Returns a host name as DNS has it: labels with other than ASCII characters are encoded
  // ("xn--…", IDNA). Returns nullopt if the name cannot be encoded. `host` is UTF-8.
  virtual std::optional<std::string> asciiHostName(const std::string& host) const = 0;
  // Returns a new random UUID (RFC 9562, version 4) as lower-case text.
  virtual std::string randomUuid() const = 0;

  // Writes one line to the system log.
  virtual void log(const std::string& line) const = 0;
  // Writes one line to the debug log; nothing is written unless NAVORA_DEBUG names the area.
  virtual void debug(DebugArea area, const std::string& line) const = 0;

  // Call `callback` on the main thread after each change or wake-up, until the token is destroyed.
  virtual std::unique_ptr<ObserverToken> observeTimeZoneChange(std::function<void()> callback) = 0;
  virtual std::unique_ptr<ObserverToken> observeWake(std::function<void()> callback) = 0;
};

}  // namespace navora
