#pragma once

#include <chrono>
#include <string>

#include "end_to_end/driver/Wait.h"

namespace navora::driver {

struct HttpReply {
  int status = 0;
  std::string body;
};

// Blocking requests to one server, for the driver's own use. A DriverError when no answer comes.
class HttpClient {
 public:
  // `origin` may end with a slash.
  explicit HttpClient(std::string origin);

  HttpReply get(const std::string& target, std::chrono::milliseconds timeout = defaultTimeout());
  HttpReply post(const std::string& target, const std::string& json,
                 std::chrono::milliseconds timeout = defaultTimeout());
  HttpReply remove(const std::string& target);

  const std::string& origin() const { return origin_; }

 private:
  std::string origin_;
};

}  // namespace navora::driver
