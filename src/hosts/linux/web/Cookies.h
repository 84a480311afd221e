#pragma once

#include <functional>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/HttpCookie.h"

namespace navora {

HttpCookie httpCookieFrom(SoupCookie& cookie);

// Every cookie of the store, whichever host it is for; none if the store cannot be read. Calls
// `completion` once, later, unless `cancellable` is cancelled before.
void readAllCookies(WebKitCookieManager* store, GCancellable* cancellable,
                    std::function<void(std::vector<HttpCookie>)> completion);

}  // namespace navora
