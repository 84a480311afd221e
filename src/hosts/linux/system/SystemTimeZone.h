#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace navora {

// Where the system keeps its time zone.
class SystemTimeZone {
 public:
  // `configuration` is the folder with the files "localtime" and "timezone"; `environment` the
  // value of TZ, which wins.
  explicit SystemTimeZone(std::filesystem::path configuration = "/etc");

  // The IANA identifier that is set now; "UTC" when nothing says otherwise.
  std::string identifier(const std::optional<std::string>& environment) const;

  // Replaced whenever the zone changes.
  std::filesystem::path localTimeFile() const { return configuration_ / "localtime"; }

 private:
  std::optional<std::string> linkedZone() const;
  std::optional<std::string> namedZone() const;

  std::filesystem::path configuration_;
};

}  // namespace navora
