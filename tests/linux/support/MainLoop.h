#pragma once

#include <chrono>

#include "contracts/MainLoop.h"

namespace navora {

// Returns the time after which waiting fails, multiplied by the environment variable
// NAVORA_TEST_TIMEOUT_FACTOR.
std::chrono::milliseconds patience();

}  // namespace navora
