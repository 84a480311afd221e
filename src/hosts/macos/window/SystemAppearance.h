#pragma once

#include <functional>
#include <memory>

#include "platform/ObserverToken.h"

namespace navora {

// Whether the desktop is dark now.
bool systemIsDark();

// Calls back on the main thread after the desktop's appearance changed in any respect.
std::unique_ptr<ObserverToken> observeSystemAppearance(std::function<void()> callback);

}  // namespace navora
