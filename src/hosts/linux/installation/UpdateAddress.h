#pragma once

#include "support/Url.h"

namespace navora {

// Returns whether feeds and archives may be fetched from `url`: https, or http on loopback, for the
// development service.
bool isUpdateAddress(const Url& url);
// Returns whether `url` is an http URL on loopback.
bool isLoopbackAddress(const Url& url);

}  // namespace navora
