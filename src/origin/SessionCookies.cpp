#include "origin/SessionCookies.h"

#include <string_view>

#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view sessionCookieName = "tolvin_session";

std::string_view withoutDots(std::string_view domain, CookieDomainDots dots) {
  if (dots == CookieDomainDots::allAround) return strippedOf(domain, ".");
  if (domain.starts_with('.')) domain.remove_prefix(1);
  return domain;
}

bool belongsTo(const HttpCookie& cookie, const Url& origin, CookieDomainDots dots) {
  const auto host = origin.host();
  return host && lowercasedAscii(withoutDots(cookie.domain, dots)) == lowercasedAscii(*host) &&
         cookie.path == "/";
}

bool isUsable(const HttpCookie& cookie, const Url& origin, Date now, CookieDomainDots dots) {
  if (cookie.name != sessionCookieName || !belongsTo(cookie, origin, dots)) return false;
  if (cookie.isSecure && lowercasedAscii(origin.scheme().value_or("")) != "https") return false;
  return !cookie.expires || *cookie.expires > now;
}

}  // namespace

std::optional<std::string> sessionCookieHeader(const std::vector<HttpCookie>& cookies,
                                               const Url& origin, Date now, CookieDomainDots dots) {
  std::string header;
  for (const HttpCookie& cookie : cookies) {
    if (!isUsable(cookie, origin, now, dots)) continue;
    if (!header.empty()) header += "; ";
    header += cookie.name + "=" + cookie.value;
  }
  if (header.empty()) return std::nullopt;
  return header;
}

}  // namespace navora
