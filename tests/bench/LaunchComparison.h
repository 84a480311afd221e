#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "bench/BenchmarkDesktop.h"
#include "bench/BenchmarkOptions.h"
#include "bench/BenchmarkService.h"
#include "bench/Launch.h"
#include "bench/Program.h"
#include "bench/Report.h"

namespace navora::bench {

// Launches Navora and surf alternately on the same page of the same service and compares their
// times, memory and idle activity. Throws a TestError if one does not start or load its page.
class LaunchComparison {
 public:
  explicit LaunchComparison(BenchmarkOptions options);

  void run(std::ostream& out);

 private:
  enum class Data { fresh, kept };
  using Figures = std::map<std::string, double>;  // by label

  std::vector<Program> programs(const BenchmarkService& service) const;
  void compare(std::ostream& out, Data data);
  void prepare(const Program& program, Data data);
  Figures measureLaunch(const Program& program);
  Figures measureIdle(const Program& program);

  BenchmarkOptions options_;
  BenchmarkDesktop desktop_;
  BenchmarkService drivenService_;
  BenchmarkService quietService_;
  std::map<std::string, bool> sandboxed_;
};

}  // namespace navora::bench
