#pragma once

#include <string_view>

namespace navora {

// Stops the process because of a programming error: writes
// "Fatal error: <message> (<source>:<line>)" to standard error and aborts. `source` and `line` name
// the rule that was broken; they are part of the message and need not be a file of this program.
[[noreturn]] void fatalError(std::string_view message, std::string_view source, int line);

// Stops the process without a text of its own, for a check whose failure has none.
[[noreturn]] void preconditionFailure();

}  // namespace navora
