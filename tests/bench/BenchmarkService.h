#pragma once

#include <memory>
#include <string>

#include "end_to_end/driver/ChildProcess.h"
#include "tests/support/Files.h"

namespace navora::bench {

// The development service, reached directly. Pages with the test driver report their timings but
// poll for its next script; pages without it are idle.
class BenchmarkService {
 public:
  enum class Pages { withDriver, withoutDriver };

  explicit BenchmarkService(Pages pages);

  // "http://127.0.0.1:PORT", without a trailing slash.
  const std::string& origin() const { return origin_; }

 private:
  TemporaryDirectory folder_;
  std::unique_ptr<driver::ChildProcess> process_;
  std::string origin_;
};

}  // namespace navora::bench
