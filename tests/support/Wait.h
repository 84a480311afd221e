#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace navora {

// Thrown by test helpers when the desktop, the application or a fake does not do what a test asked
// of it. The message says what was expected; GoogleTest reports it as the failure.
class TestError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The time after which a wait fails: 30 s, multiplied by timeoutFactor().
std::chrono::milliseconds defaultTimeout();

// The value of the environment variable NAVORA_TEST_TIMEOUT_FACTOR, which lengthens every wait for
// sanitizers and slow machines; 1 unless it is a positive number.
double timeoutFactor();

// Polls `condition` until it holds. Throws TestError on time-out, with `description`, which names
// the condition as a statement ("the main window is shown"), and with the text that `state`
// returns about what was there instead.
void waitUntil(const std::function<bool()>& condition, std::string_view description,
               std::chrono::milliseconds timeout = defaultTimeout(),
               const std::function<std::string()>& state = {});

// Polls `condition`; returns true as soon as it holds, and false on time-out.
bool becomesTrue(const std::function<bool()>& condition,
                 std::chrono::milliseconds timeout = defaultTimeout());

// Polls `condition` for `duration`; returns false as soon as it does not hold. The only way to
// observe that something does not happen.
bool holdsFor(const std::function<bool()>& condition, std::chrono::milliseconds duration);

// Polls `producer`, which returns a std::optional, until it has a value, and returns that value.
// Throws TestError on time-out, as waitUntil() does.
template <typename Producer>
auto waitFor(const Producer& producer, std::string_view description,
             std::chrono::milliseconds timeout = defaultTimeout(),
             const std::function<std::string()>& state = {}) {
  decltype(producer()) value;
  waitUntil([&] { return (value = producer()).has_value(); }, description, timeout, state);
  return std::move(*value);
}

}  // namespace navora
