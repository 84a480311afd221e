#include "hosts/linux/system/SystemTimeZone.h"

#include <array>
#include <fstream>
#include <string_view>
#include <utility>

#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view zoneFolder = "/zoneinfo/";

// Removes "posix/" and "right/", which hold the same zones without and with leap seconds.
std::string_view withoutFlavour(std::string_view zone) {
  for (const std::string_view flavour : {"posix/", "right/"}) {
    if (zone.starts_with(flavour)) zone.remove_prefix(flavour.size());
  }
  return zone;
}

// Converts "…/zoneinfo/Europe/Riga" to "Europe/Riga".
std::optional<std::string> zoneOfPath(const std::string& path) {
  const auto folder = path.rfind(zoneFolder);
  if (folder == std::string::npos) return std::nullopt;
  const std::string_view zone =
      withoutFlavour(std::string_view(path).substr(folder + zoneFolder.size()));
  if (zone.empty()) return std::nullopt;
  return std::string(zone);
}

// Returns whether the file has the format of a zone (RFC 9636).
bool isZoneFile(const std::filesystem::path& path) {
  std::array<char, 4> beginning{};
  std::ifstream file(path, std::ios::binary);
  file.read(beginning.data(), beginning.size());
  return file && std::string_view(beginning.data(), beginning.size()) == "TZif";
}

}  // namespace

SystemTimeZone::SystemTimeZone(std::filesystem::path configuration, std::filesystem::path database)
    : configuration_(std::move(configuration)), database_(std::move(database)) {}

// Parses TZ: a zone's name or the path of its file, after an optional colon (POSIX.1, 8.3). Returns
// std::nullopt for everything else: a rule such as "<+03>-3" names no zone, and neither does
// "localtime" or its path, which mean the system's zone.
std::optional<std::string> SystemTimeZone::zoneOfVariable(std::string_view value) const {
  if (value.starts_with(':')) value.remove_prefix(1);
  if (value.empty()) return std::nullopt;
  const std::filesystem::path file = database_ / value;  // `value` itself if it is a path
  if (!isZoneFile(file)) return std::nullopt;
  auto zone = value.starts_with('/') ? zoneOfPath(std::string(value))
                                     : std::optional(std::string(withoutFlavour(value)));
  return zone == "localtime" ? std::nullopt : zone;
}

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
