#pragma once

#include <string>
#include <vector>

#include "end_to_end/driver/ChildProcess.h"

namespace navora::bench {

// A program that shows the sign-in page of an origin in its first window.
struct Program {
  std::string name;
  std::vector<std::string> command;
  driver::Environment environment;
  // What it calls its own folders in the home, data, configuration and cache folders.
  std::vector<std::string> folders;

  static Program navora(const std::string& origin, driver::Environment additional);
  static Program surf(const std::string& origin);
};

// Throws a TestError that says what to install when the other browser is missing.
void requireSurf();

}  // namespace navora::bench
