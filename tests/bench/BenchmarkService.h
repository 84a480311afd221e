#pragma once

#include <memory>
#include <string>

#include "end_to_end/driver/ChildProcess.h"
#include "tests/support/Files.h"

namespace navora::bench {

// The development service, reached without anything in between. Pages with the driver tell their
// times but wait for its next script all the time; pages without it do nothing of their own.
class BenchmarkService {
 public:
  enum class Pages { withDriver, withoutDriver };

  explicit BenchmarkService(Pages pages);

  // "http://127.0.0.1:PORT", without a slash.
  const std::string& origin() const { return origin_; }

 private:
  TemporaryDirectory folder_;
  std::unique_ptr<driver::ChildProcess> process_;
  std::string origin_;
};

}  // namespace navora::bench
