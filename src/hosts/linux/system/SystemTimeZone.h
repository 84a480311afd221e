#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace navora {

// Reads the system's time zone.
class SystemTimeZone {
 public:
  // `configuration` is the folder with the files "localtime" and "timezone".
  explicit SystemTimeZone(std::filesystem::path configuration = "/etc");

  // Returns the present IANA identifier; "UTC" if none is set. `environment` is the value of TZ,
  // which takes precedence.
  std::string identifier(const std::optional<std::string>& environment) const;

  // Returns the file that is replaced when the zone changes.
  std::filesystem::path localTimeFile() const { return configuration_ / "localtime"; }

 private:
  std::optional<std::string> linkedZone() const;
  std::optional<std::string> namedZone() const;

  std::filesystem::path configuration_;
};

}  // namespace navora
