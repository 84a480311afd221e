#include "bench/BenchmarkService.h"

#include "end_to_end/driver/Executables.h"

namespace navora::bench {

BenchmarkService::BenchmarkService(Pages pages) : folder_("navora-bench-service") {
  driver::ChildProcess::Options options;
  options.arguments = {driver::serviceExecutable(), "--port", "0", "--test"};
  if (pages == Pages::withDriver) options.arguments.emplace_back("--test-driver");
  options.environment = driver::baseEnvironment();
  options.standardOutput = folder_.path() / "navora-service.out";
  options.standardError = folder_.path() / "navora-service.err";
  process_ = std::make_unique<driver::ChildProcess>(std::move(options));
  origin_ = process_->waitForLine("navora-service listening on ");
  while (origin_.ends_with('/'))
    origin_.pop_back();
}

}  // namespace navora::bench
