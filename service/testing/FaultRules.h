#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "service/support/Json.h"
#include "service/testing/HttpMessage.h"

namespace navora::service {

// The fault to carry out in place of the proper reply, or around it.
struct AnswerFault {
  int status;
  HeaderList headers;
  std::string body;
  std::string contentType;
  bool processed;  // Whether the service processes the request first.
};
struct DelayFault {
  std::chrono::milliseconds duration;
};
struct HangFault {
  bool processed;
};
struct DropFault {
  enum class Moment { before, during, after };
  Moment moment;
  std::size_t bytes;  // The size of the body before the end, with `during`.
};
struct OversizeFault {
  std::size_t bytes;
  bool processed;
};
struct GarbageFault {};
struct SlowFault {
  std::size_t bytes;
  std::chrono::milliseconds interval;
};
using Fault = std::variant<AnswerFault, DelayFault, HangFault, DropFault, OversizeFault,
                           GarbageFault, SlowFault>;

// The requests that meet a fault, and how often.
struct FaultRule {
  std::string method;  // Empty for every method.
  std::string path;    // Without the query.
  int times = 1;       // -1 for no limit.
  Fault fault;

  // Returns nullopt unless the JSON describes exactly one fault.
  static std::optional<FaultRule> parse(const Json& json);
};

// The rules in force. The oldest rule that matches a request applies.
class FaultRules {
 public:
  void add(FaultRule rule);
  void clear();

  // Returns the fault for a request, and counts one use of its rule.
  std::optional<Fault> take(const std::string& method, const std::string& path);

  // Increases whenever the rules are cleared, which ends requests that hang.
  std::uint64_t generation() const { return generation_; }

 private:
  std::mutex mutex_;
  std::vector<FaultRule> rules_;
  std::atomic<std::uint64_t> generation_ = 0;
};

}  // namespace navora::service
