#include "hosts/linux/system/SystemTimeZone.h"

#include <fstream>
#include <string_view>
#include <utility>

#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view zoneFolder = "/zoneinfo/";

// "…/zoneinfo/Europe/Riga" to "Europe/Riga". The folder may hold the same zones in other flavours.
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

// The name itself or the path of a zone's file, after an optional colon. Any other file, such as
// /etc/localtime, names no zone: it is the system's own, as everybody reads it.
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

// Systems that copy the zone's file instead of linking to it write its name down here.
std::optional<std::string> SystemTimeZone::namedZone() const {
  std::ifstream file(configuration_ / "timezone");
  std::string line;
  if (!std::getline(file, line)) return std::nullopt;
  std::string zone(trimmed(line));
  if (zone.empty()) return std::nullopt;
  return zone;
}

}  // namespace navora
