#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/HttpCookie.h"
#include "support/Date.h"
#include "support/Url.h"

namespace navora {

// The dots around a stored cookie's domain that are ignored when it is compared with a host.
enum class CookieDomainDots { oneLeading, allAround };

// Returns the value of a "Cookie" header with the service's session cookies among `cookies`, or
// nullopt if there are none. A cookie counts only if its domain is exactly the origin's host, its
// path is "/", it has not expired by `now`, and, for a secure cookie, the origin is https.
std::optional<std::string> sessionCookieHeader(const std::vector<HttpCookie>& cookies,
                                               const Url& origin, Date now, CookieDomainDots dots);

}  // namespace navora
