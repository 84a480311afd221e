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

/// What to do in place of a proper answer, or around it.
struct AnswerFault {
  int status;
  HeaderList headers;
  std::string body;
  std::string contentType;
  bool processed;  ///< Only after the service has done what was asked.
};
struct DelayFault {
  std::chrono::milliseconds duration;
};
struct HangFault {};
struct DropFault {
  enum class Moment { before, during, after };
  Moment moment;
  std::size_t bytes;  ///< Of the body, with `during`.
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

/// Which requests meet a fault, and how often.
struct FaultRule {
  std::string method;  ///< Empty: every method.
  std::string path;    ///< Without the query.
  int times = 1;       ///< -1: for ever.
  Fault fault;

  /// Nothing when the JSON does not describe exactly one fault.
  static std::optional<FaultRule> parse(const Json& json);
};

/// The rules in force. The oldest rule that matches a request is used.
class FaultRules {
 public:
  void add(FaultRule rule);
  void clear();

  /// The fault for a request; uses up one of the rule's times.
  std::optional<Fault> take(const std::string& method, const std::string& path);

  /// Changes with every clearing: what hangs is let go then.
  std::uint64_t generation() const { return generation_; }

 private:
  std::mutex mutex_;
  std::vector<FaultRule> rules_;
  std::atomic<std::uint64_t> generation_ = 0;
};

}  // namespace navora::service
