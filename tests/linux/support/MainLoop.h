#pragma once

#include <chrono>
#include <functional>

#include <gtest/gtest.h>

namespace navora {

// Returns the time after which waiting fails, multiplied by the environment variable
// NAVORA_TEST_TIMEOUT_FACTOR.
std::chrono::milliseconds patience();

// Runs the main loop until `condition` holds, which is checked after every event and every few
// milliseconds: `ASSERT_TRUE(waitUntil(...))`.
testing::AssertionResult waitUntil(const std::function<bool()>& condition);

// Handles the events that are ready, without waiting for new ones.
void runPendingEvents();

}  // namespace navora
