#pragma once

#include <functional>
#include <vector>

#include <webkit2/webkit2.h>

#include "platform/HttpCookie.h"

namespace navora {

// Converts a libsoup cookie.
HttpCookie httpCookieFrom(SoupCookie& cookie);

// Reads the cookies of all hosts. Calls `completion` once, after this function has returned, with
// an empty list if the store cannot be read; never if `cancellable` is cancelled first.
void readAllCookies(WebKitCookieManager* store, GCancellable* cancellable,
                    std::function<void(std::vector<HttpCookie>)> completion);

}  // namespace navora
