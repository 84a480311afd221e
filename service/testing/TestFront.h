#pragma once

#include <atomic>
#include <functional>
#include <list>
#include <string_view>
#include <thread>

#include "service/testing/Socket.h"
#include "service/testing/TestControls.h"
#include "service/testing/TestPages.h"

namespace navora::service {

/// Stands before the HTTP server in test mode. It records every request as it came, carries out
/// faults on the socket itself, answers the test controls, and relays the rest.
///
/// Every connection carries one request, so that a recorded order of requests is the order in
/// which they were made.
class TestFront {
 public:
  /// Takes the next bytes of an answer; false when it needs no more of them.
  using AnswerSink = std::function<bool(std::string_view)>;

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

  /// Makes the server process the request and passes its answer on as it comes.
  void properAnswer(const WireRequest& request, const AnswerSink& sink);

  StopSignal stop_;
  Listener listener_;
  int serverPort_;
  TestControls& controls_;
  TestPages pages_;
  std::list<Worker> workers_;
  std::thread thread_;
};

}  // namespace navora::service
