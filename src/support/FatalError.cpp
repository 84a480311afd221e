#include "support/FatalError.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace navora {

void fatalError(std::string_view message, std::string_view source, int line) {
  std::string text = "Fatal error: ";
  text.append(message).append(" (").append(source).append(":");
  text.append(std::to_string(line)).append(")\n");
  // A single write keeps the line intact when another process shares the terminal.
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
  std::abort();
}

void preconditionFailure() {
  __builtin_trap();
}

}  // namespace navora
