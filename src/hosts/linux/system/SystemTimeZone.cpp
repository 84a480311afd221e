#include "hosts/linux/system/SystemTimeZone.h"

#include <fstream>
#include <string_view>
#include <utility>

#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view zoneFolder = "/zoneinfo/";

// Converts "…/zoneinfo/Europe/Riga" to "Europe/Riga". Drops "posix/" and "right/", which hold the
// same zones without and with leap seconds.
std::optional<std::string> zoneOfPath(const std::string& path) {
  const auto folder = path.rfind(zoneFolder);
  if (folder == std::string::npos) return std::nullopt;
  std::string_view zone = std::string_view(path).substr(folder + zoneFolder.size());
  for (const std::string_view flavour : {"posix/", "right/"}) {
    if (zone.starts_with(flavour)) zone.remove_prefix(flavour.size());
  }
  if (zone.empty()) return std::nullopt;
  return std::string(zone);
}

// Parses TZ: a zone's name or the path of its file, after an optional colon (POSIX.1, 8.3). Returns
// std::nullopt for any other path: TZ=:/etc/localtime means the system's zone.
std::optional<std::string> zoneOfVariable(std::string_view value) {
  if (value.starts_with(':')) value.remove_prefix(1);
  if (value.empty()) return std::nullopt;
  if (value.starts_with('/')) return zoneOfPath(std::string(value));
  return std::string(value);
}

}  // namespace

SystemTimeZone::SystemTimeZone(std::filesystem::path configuration)
    : configuration_(std::move(configuration)) {}

std::string SystemTimeZone::identifier(const std::optional<std::string>& environment) const {
  if (environment) {
    if (auto zone = zoneOfVariable(*environment)) return *zone;
  }
  if (auto zone = linkedZone()) return *zone;
  return namedZone().value_or("UTC");
}

std::optional<std::string> SystemTimeZone::linkedZone() const {
  std::error_code error;
  const auto target = std::filesystem::read_symlink(localTimeFile(), error);
  return error ? std::nullopt : zoneOfPath(target.string());
}

// Debian stores the name here too, for systems whose localtime is a copy and not a link.
std::optional<std::string> SystemTimeZone::namedZone() const {
  std::ifstream file(configuration_ / "timezone");
  std::string line;
  if (!std::getline(file, line)) return std::nullopt;
  std::string zone(trimmed(line));
  if (zone.empty()) return std::nullopt;
  return zone;
}

}  // namespace navora
