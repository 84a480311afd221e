#include "origin/DesktopOrigin.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "support/FatalError.h"
#include "support/PercentEncoding.h"
#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view productionOrigin = "https://navora.example";
constexpr std::array<std::string_view, 4> plaintextHosts = {"localhost", "127.0.0.1", "::1",
                                                            "[::1]"};

std::optional<std::string> lowercased(std::optional<std::string> text) {
  return text ? std::optional(lowercasedAscii(*text)) : std::nullopt;
}

bool hasCredentials(const Url& url) {
  return url.user() || url.password();
}

std::uint16_t effectivePort(const Url& url) {
  return url.port().value_or(lowercased(url.scheme()) == "https" ? 443 : 80);
}

bool mayServe(const Url& url) {
  const auto host = lowercased(url.host());
  if (!host || host->empty() || hasCredentials(url)) return false;
  const auto scheme = lowercased(url.scheme());
  if (scheme == "https") return true;
  return scheme == "http" && std::ranges::find(plaintextHosts, *host) != plaintextHosts.end();
}

std::optional<Url> withAsciiHost(const Url& url, const DesktopOrigin::HostNameEncoder& toAscii) {
  UrlComponents components = url.components();
  // Url has encoded every other character.
  if (!components.host || components.host->find('%') == std::string::npos) return url;
  const std::string host = percentDecoded(*components.host);
  components.host = isValidUtf8(host) ? toAscii(host) : std::nullopt;
  return components.host ? Url::fromComponents(components) : std::nullopt;
}

std::optional<Url> rootOf(const Url& url) {
  UrlComponents components = url.components();
  components.path = std::string("/");
  components.query.reset();
  components.fragment.reset();
  return Url::fromComponents(components);
}

}  // namespace

const Url& DesktopOrigin::production() {
  static const Url url = [] {
    const auto parsed = Url::parse(productionOrigin);
    if (!parsed) fatalError("The production origin does not parse", "DesktopOrigin", __LINE__);
    return *parsed;
  }();
  return url;
}

Url DesktopOrigin::configured(std::optional<std::string_view> value) {
  const auto url = value ? Url::parse(*value) : std::nullopt;
  if (!url || !mayServe(*url)) return production();
  return rootOf(*url).value_or(production());
}

Url DesktopOrigin::configured(std::optional<std::string_view> value,
                              const HostNameEncoder& toAscii) {
  return withAsciiHost(configured(value), toAscii).value_or(production());
}

bool DesktopOrigin::contains(const Url& url, const Url& origin) {
  return !hasCredentials(url) && lowercased(url.scheme()) == lowercased(origin.scheme()) &&
         lowercased(url.host()) == lowercased(origin.host()) &&
         effectivePort(url) == effectivePort(origin);
}

bool DesktopOrigin::canOpenExternally(const Url& url) {
  if (hasCredentials(url)) return false;
  const auto scheme = lowercased(url.scheme());
  if (scheme == "https" || scheme == "http") return url.host().has_value();
  return scheme == "mailto" || scheme == "tel";
}

}  // namespace navora
