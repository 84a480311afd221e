#pragma once

#include <memory>
#include <optional>
#include <string>

#include "service/ServiceOptions.h"

namespace navora::service {

// The running service: storage, background jobs, the HTTP server and, in test mode, the front that
// carries out faults.
class Service {
 public:
  explicit Service(ServiceOptions options);
  ~Service();
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  // Starts serving; the port accepts connections when it returns. Returns a message on failure.
  std::optional<std::string> start();

  // Closes every connection and joins all threads. Does nothing unless the service runs.
  void stop();

  int port() const;
  std::string address() const;  // "http://127.0.0.1:8080/"

 private:
  class Parts;

  ServiceOptions options_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace navora::service
