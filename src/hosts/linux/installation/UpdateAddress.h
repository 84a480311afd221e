#pragma once

#include "support/Url.h"

namespace navora {

// Whether releases may be asked for, and fetched, from there: over https, or over http from this
// machine, where the development service is.
bool isUpdateAddress(const Url& url);
bool isLoopbackAddress(const Url& url);

}  // namespace navora
