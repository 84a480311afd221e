#pragma once

#include <chrono>
#include <string>
#include <variant>
#include <vector>

#include "end_to_end/driver/ChildProcess.h"

namespace navora::bench {

struct BenchmarkOptions {
  int runs = 10;
  int idleRuns = -1;  // negative: as many as `runs`; 0: no idle figures
  std::chrono::seconds idleTime{30};
  bool accessibility = false;
  driver::Environment navoraEnvironment = {};

  int idleRunCount() const { return idleRuns < 0 ? runs : idleRuns; }

  struct Mistake {
    std::string message;
  };
  struct Help {};

  // Parses the arguments after the program's name.
  static std::variant<BenchmarkOptions, Help, Mistake> parse(
      const std::vector<std::string>& arguments);
  static std::string usage();
};

}  // namespace navora::bench
