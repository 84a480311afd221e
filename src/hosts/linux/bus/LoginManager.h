#pragma once

#include <functional>
#include <memory>

#include "platform/ObserverToken.h"

namespace navora {

// Calls `callback` each time logind reports that the system has resumed from sleep (PrepareForSleep
// with false), until the token is destroyed. Without a system bus or logind it is never called.
std::unique_ptr<ObserverToken> observeResume(std::function<void()> callback);

}  // namespace navora
