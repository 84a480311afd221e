#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "platform/Image.h"

namespace navora {

// The part of main() that does not depend on a toolkit.
class NavoraMain {
 public:
  // The program as its host provides it.
  struct Program {
    CommandLineStyle style;
    Imaging& imaging;
    std::function<std::string()> version;
    // Runs the application until it quits; returns the exit status.
    std::function<int(LaunchPurpose)> runApplication;
  };

  // Does what the command line asks for and returns the exit status. Only `runApplication` needs a
  // display. "--self-test" runs the built-in checks and returns 0; a failing check ends the
  // process. An unknown argument is reported in one line on standard error and returns 2.
  // `arguments` begin with the program's path.
  static int main(const std::vector<std::string>& arguments, const Program& program);
};

}  // namespace navora
