#pragma once

#include <chrono>
#include <functional>

#include <gtest/gtest.h>

namespace navora {

// How long a wait may take on a busy machine before it counts as a failure; stretched by the
// environment variable NAVORA_TEST_TIMEOUT_FACTOR.
std::chrono::milliseconds patience();

// Runs the main loop until `condition` holds, and looks at it between events and every few
// milliseconds: `ASSERT_TRUE(waitUntil(...))`.
testing::AssertionResult waitUntil(const std::function<bool()>& condition);

// Runs what is ready to run in the main loop, without waiting for anything new.
void runPendingEvents();

}  // namespace navora
