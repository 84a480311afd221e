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

// Takes the public port in test mode. Records each request as received, carries out faults on the
// socket, answers the test controls, and relays all other requests to the HTTP server.
//
// A connection carries one request, so that the recorded order is the order in which requests were
// made.
class TestFront {
 public:
  // Receives the next bytes of a reply; returns false when it needs no more.
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

  // Has the server process the request and forwards its reply as it arrives.
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
