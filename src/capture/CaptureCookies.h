#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/HttpCookie.h"
#include "support/Date.h"
#include "support/Url.h"

namespace navora {

// The value of the "Cookie" header with the service's session among these cookies; none without a
// session. Only cookies of exactly the origin's host and of its root path count.
std::optional<std::string> captureCookieHeader(const std::vector<HttpCookie>& cookies,
                                               const Url& origin, Date now);

}  // namespace navora
