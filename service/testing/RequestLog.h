#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "service/support/Json.h"
#include "service/testing/HttpMessage.h"

namespace navora::service {

/// Every request that arrived since start or the last clearing, as JSON objects.
class RequestLog {
 public:
  /// Which requests to report; empty members match all.
  struct Filter {
    std::string method;
    std::string path;
  };

  void record(const WireRequest& request);
  void clear();

  /// The matching requests, as soon as there are `count` of them, and at the latest after
  /// `timeout` or when `waiting` turns false.
  Json read(const Filter& filter, std::size_t count, std::chrono::milliseconds timeout,
            const std::function<bool()>& waiting);

 private:
  Json matching(const Filter& filter) const;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Json> requests_;
  std::size_t sequence_ = 0;
};

}  // namespace navora::service
