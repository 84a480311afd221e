#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/HttpCookie.h"
#include "support/Date.h"
#include "support/Url.h"

namespace navora {

// Which dots around a stored cookie's domain do not count.
enum class CookieDomainDots { oneLeading, allAround };

// The value of the "Cookie" header with the service's session among these cookies; none without a
// session. Only cookies of exactly the origin's host and of its root path count.
std::optional<std::string> sessionCookieHeader(const std::vector<HttpCookie>& cookies,
                                               const Url& origin, Date now, CookieDomainDots dots);

}  // namespace navora
