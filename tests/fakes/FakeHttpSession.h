#pragma once

#include <cstddef>
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
    std::size_t underWay() const { return transfers.size(); }
    // Ends the oldest request that waits. Of a body beyond its session's limit nothing is left.
    void finish(HttpSession::Result result);
    // With this status and body, from the address that was asked.
    void answer(int status, std::string body);
    void fail(int code);

    struct Transfer {
      const HttpSession* session;
      std::size_t maximumBodyBytes;
      Url url;
      HttpSession::Completion completion;
    };
    std::deque<Transfer> transfers;
  };

  FakeHttpSession(std::shared_ptr<Network> network, const HttpSessionConfiguration& configuration);
  ~FakeHttpSession() override;
  FakeHttpSession(const FakeHttpSession&) = delete;
  FakeHttpSession& operator=(const FakeHttpSession&) = delete;

  void send(const HttpRequest& request, Completion completion) override;

 private:
  std::shared_ptr<Network> network_;
  const std::size_t maximumBodyBytes_;
};

}  // namespace navora
