#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/HttpSession.h"

namespace navora {

// A network whose every answer is the test's.
class FakeHttpSession final : public HttpSession {
 public:
  // What outlives the session.
  struct Network {
    std::vector<HttpSessionConfiguration> sessions;
    // Every request that was ever sent.
    std::vector<HttpRequest> requests;

    // How many wait for their answer.
    std::size_t underWay() const { return completions.size(); }
    // Ends the oldest request that waits.
    void finish(HttpSession::Result result);
    // With this status and body, from the address that was asked.
    void answer(int status, std::string body);
    void fail(int code);

    std::deque<std::pair<HttpRequest, HttpSession::Completion>> completions;
  };

  FakeHttpSession(std::shared_ptr<Network> network, const HttpSessionConfiguration& configuration);
  ~FakeHttpSession() override;
  FakeHttpSession(const FakeHttpSession&) = delete;
  FakeHttpSession& operator=(const FakeHttpSession&) = delete;

  void send(const HttpRequest& request, Completion completion) override;

 private:
  std::shared_ptr<Network> network_;
};

}  // namespace navora
