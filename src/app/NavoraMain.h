#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Image.h"

namespace navora {

class NavoraMain {
 public:
  // The program, without its toolkit: with the argument "--self-test" runs the built-in checks and
  // returns 0 (a failing check ends the process), otherwise returns what `runApplication` does.
  // `arguments` include the program's path.
  static int main(const std::vector<std::string>& arguments, Imaging& imaging,
                  const std::function<int()>& runApplication);
};

}  // namespace navora
