#pragma once

#include <atomic>
#include <list>
#include <optional>
#include <string>
#include <thread>

#include "testing/Socket.h"
#include "testing/TestControls.h"
#include "testing/TestPages.h"

namespace navora::service {

/// Stands before the HTTP server in test mode. It records every request as it came, carries out
/// faults on the socket itself, answers the test controls, and relays the rest.
///
/// Every connection carries one request, so that a recorded order of requests is the order in
/// which they were made.
class TestFront {
 public:
  TestFront(Listener listener, int serverPort, TestControls& controls, TestPages pages);
  ~TestFront();
  TestFront(const TestFront&) = delete;
  TestFront& operator=(const TestFront&) = delete;

  int port() const { return listener_.port(); }

 private:
  struct Worker {
    std::atomic<bool> done = false;
    std::thread thread;
  };

  void acceptConnections();
  void joinFinished();
  void serve(Connection connection);
  void misbehave(const Fault& fault, const WireRequest& request, Connection& connection);

  /// The bytes of the proper answer, or nothing when the server gave none.
  std::optional<std::string> properAnswer(const WireRequest& request);

  StopSignal stop_;
  Listener listener_;
  int serverPort_;
  TestControls& controls_;
  TestPages pages_;
  std::list<Worker> workers_;
  std::thread thread_;
};

}  // namespace navora::service
