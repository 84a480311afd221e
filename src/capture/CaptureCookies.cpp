#include "capture/CaptureCookies.h"

#include <string_view>

#include "support/Text.h"

namespace navora {
namespace {

constexpr std::string_view sessionCookieName = "tolvin_session";

bool belongsTo(const HttpCookie& cookie, const Url& origin) {
  const auto host = origin.host();
  return host && lowercasedAscii(strippedOf(cookie.domain, ".")) == lowercasedAscii(*host) &&
         cookie.path == "/";
}

bool isUsable(const HttpCookie& cookie, const Url& origin, Date now) {
  if (cookie.name != sessionCookieName || !belongsTo(cookie, origin)) return false;
  if (cookie.isSecure && origin.scheme() != "https") return false;
  return !cookie.expires || *cookie.expires > now;
}

}  // namespace

std::optional<std::string> captureCookieHeader(const std::vector<HttpCookie>& cookies,
                                               const Url& origin, Date now) {
  std::string header;
  for (const HttpCookie& cookie : cookies) {
    if (!isUsable(cookie, origin, now)) continue;
    if (!header.empty()) header += "; ";
    header += cookie.name + "=" + cookie.value;
  }
  if (header.empty()) return std::nullopt;
  return header;
}

}  // namespace navora
