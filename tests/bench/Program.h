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
  // The names of its folders in the home, data, configuration and cache folders.
  std::vector<std::string> folders;

  static Program navora(const std::string& origin, driver::Environment additional);
  static Program surf(const std::string& origin);
};

// Throws a TestError that names the package to install if surf is missing.
void requireSurf();

}  // namespace navora::bench
