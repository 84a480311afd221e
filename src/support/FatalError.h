#pragma once

#include <string_view>

namespace navora {

// Reports a programming error: writes "Fatal error: <message> (<source>:<line>)" to standard error
// and aborts. `source` and `line` identify the violated rule; they are part of the message and need
// not be a file of this program.
[[noreturn]] void fatalError(std::string_view message, std::string_view source, int line);

// Traps without writing a message, for checks whose failure has none.
[[noreturn]] void preconditionFailure();

}  // namespace navora
