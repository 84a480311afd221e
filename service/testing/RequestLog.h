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

// The requests since the start or the last clearing, as JSON objects.
class RequestLog {
 public:
  // The requests to report; empty members match all.
  struct Filter {
    std::string method;
    std::string path;
  };

  void record(const WireRequest& request);
  void clear();

  // Waits until `count` requests match, for at most `timeout` and while `waiting` returns true;
  // returns those that match.
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
