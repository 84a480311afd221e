#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace navora {

// Reads the system's time zone.
class SystemTimeZone {
 public:
  // `configuration` is the folder with the files "localtime" and "timezone", `database` the one
  // with a file for each zone.
  explicit SystemTimeZone(std::filesystem::path configuration = "/etc",
                          std::filesystem::path database = "/usr/share/zoneinfo");

  // Returns the present IANA identifier; "UTC" if none is set. `environment` is the value of TZ,
  // which takes precedence if it names a zone.
  std::string identifier(const std::optional<std::string>& environment) const;

  // Returns the file that is replaced when the zone changes.
  std::filesystem::path localTimeFile() const { return configuration_ / "localtime"; }

 private:
  std::optional<std::string> zoneOfVariable(std::string_view value) const;
  std::optional<std::string> linkedZone() const;
  std::optional<std::string> namedZone() const;

  std::filesystem::path configuration_;
  std::filesystem::path database_;
};

}  // namespace navora
