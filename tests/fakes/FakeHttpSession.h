#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "platform/HttpSession.h"

namespace navora {

// A session whose responses come from the test.
class FakeHttpSession final : public HttpSession {
 public:
  // The requests and responses of all sessions; outlives them.
  struct Network {
    std::vector<HttpSessionConfiguration> sessions;
    // Every request sent so far.
    std::vector<HttpRequest> requests;

    // The number of requests without a response.
    std::size_t underWay() const { return transfers.size(); }
    // Finish the oldest request. A body above its session's limit is dropped.
    void finish(HttpSession::Result result);
    // With this status and body, from the requested URL.
    void answer(int status, std::string body);
    void fail(int code);

    struct Transfer {
      const HttpSession* session;
      HttpSession::RequestId id;
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

  RequestId send(const HttpRequest& request, Completion completion) override;
  void cancel(RequestId request) override;

 private:
  RequestId lastRequest_ = 0;
  std::shared_ptr<Network> network_;
  const std::size_t maximumBodyBytes_;
};

}  // namespace navora
