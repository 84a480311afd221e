#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace navora::driver {

// What every part of the driver throws when the desktop, the application or a stand-in does not do
// what was asked of it. The text says what was wanted; in a test it becomes the failure message.
class DriverError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// How long a wait may take on a busy machine before it counts as a failure. The environment
// variable NAVORA_TEST_TIMEOUT_FACTOR (a positive number) stretches it, for sanitizers and slow
// machines.
std::chrono::milliseconds defaultTimeout();
double timeoutFactor();

// Polls `condition` until it holds. On time-out throws a DriverError with `description`, which
// should read as the thing waited for ("the main window is shown"), and the text of `state`, if
// given, which tells what was there instead.
void waitUntil(const std::function<bool()>& condition, std::string_view description,
               std::chrono::milliseconds timeout = defaultTimeout(),
               const std::function<std::string()>& state = {});

// True as soon as `condition` holds, false when the time is up: for questions, not for demands.
bool becomesTrue(const std::function<bool()>& condition,
                 std::chrono::milliseconds timeout = defaultTimeout());

// True when `condition` holds now and at every look until `duration` has passed: the only way to
// observe that something does not happen.
bool holdsFor(const std::function<bool()>& condition, std::chrono::milliseconds duration);

// Polls `producer`, which gives a std::optional, until it has a value, and returns that value.
template <typename Producer>
auto waitFor(const Producer& producer, std::string_view description,
             std::chrono::milliseconds timeout = defaultTimeout(),
             const std::function<std::string()>& state = {}) {
  decltype(producer()) value;
  waitUntil([&] { return (value = producer()).has_value(); }, description, timeout, state);
  return std::move(*value);
}

}  // namespace navora::driver
