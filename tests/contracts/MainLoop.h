#pragma once

#include <functional>

#include <gtest/gtest.h>

namespace navora {

// The main loop of the host under test, which each host's tests implement.

// Runs the main loop until `condition` holds, which is checked after every event and every few
// milliseconds: `ASSERT_TRUE(waitUntil(...))`.
testing::AssertionResult waitUntil(const std::function<bool()>& condition);

// Handles the events that are ready, without waiting for new ones.
void runPendingEvents();

}  // namespace navora
