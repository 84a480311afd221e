#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include "contracts/MainLoop.h"
#include "fakes/TestUrl.h"
#include "platform/HttpSession.h"
#include "tests/support/Tcp.h"

namespace navora {

// A server on this machine, for the implementations that use the network.
class LoopbackService {
 public:
  Url url() const { return url_; }

  // Sets the response; until then requests are not answered.
  void setAnswer(int status, const std::string& body) {
    server_.reset();
    server_ = std::make_unique<TcpServer>(
        "HTTP/1.1 " + std::to_string(status) +
        " Reason\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
    url_ = testUrl(server_->url("/answer"));
  }
  void disappear() { server_.reset(); }
  // The real server responds by itself.
  void work() {}

 private:
  static void keepWaiting(TcpConnection& connection) {
    while (!connection.readRequest().empty()) {
    }
  }

  std::unique_ptr<TcpServer> server_ = std::make_unique<TcpServer>(keepWaiting);
  Url url_ = testUrl(server_->url("/answer"));
};

// The contract of HttpSession, for the fake and for every host's implementation.
template <typename Service>
class HttpSessionContractTest : public testing::Test {
 protected:
  static constexpr std::size_t limit = 1000;

  void SetUp() override { session = makeSession(); }

  std::unique_ptr<HttpSession> makeSession() {
    return service.makeSession({.maximumBodyBytes = limit});
  }
  HttpRequest request() const { return {.url = service.url()}; }

  testing::AssertionResult comesTrue(const std::function<bool()>& condition) {
    return waitUntil([&] {
      if (!condition()) service.work();
      return condition();
    });
  }
  HttpSession::Result send(HttpSession& sender) {
    std::vector<HttpSession::Result> results;
    sender.send(request(),
                [&](HttpSession::Result result) { results.push_back(std::move(result)); });
    EXPECT_THAT(results, testing::IsEmpty()) << "The response must be asynchronous";
    EXPECT_TRUE(comesTrue([&] { return !results.empty(); }));
    return results.empty() ? Unexpected(PlatformError{"test", 0, "No answer"}) : results.front();
  }

  Service service;
  std::unique_ptr<HttpSession> session;
};

TYPED_TEST_SUITE_P(HttpSessionContractTest);

TYPED_TEST_P(HttpSessionContractTest, DeliversTheResponseAsynchronouslyWithItsUrl) {
  this->service.setAnswer(404, "not here");
  const auto result = this->send(*this->session);
  ASSERT_TRUE(result);
  EXPECT_EQ(*result, (HttpResponse{404, this->service.url(), "not here", false}));
}

TYPED_TEST_P(HttpSessionContractTest, DeliversTheErrorOfAFailedRequest) {
  this->service.disappear();
  const auto result = this->send(*this->session);
  ASSERT_FALSE(result);
  EXPECT_FALSE(result.error().localizedDescription.empty());
}

TYPED_TEST_P(HttpSessionContractTest, DeliversABodyOfTheLimit) {
  this->service.setAnswer(200, std::string(this->limit, 'x'));
  const auto result = this->send(*this->session);
  ASSERT_TRUE(result);
  EXPECT_EQ(*result,
            (HttpResponse{200, this->service.url(), std::string(this->limit, 'x'), false}));
}

TYPED_TEST_P(HttpSessionContractTest, DeliversNothingOfABodyAboveTheLimit) {
  this->service.setAnswer(200, std::string(this->limit + 1, 'x'));
  const auto result = this->send(*this->session);
  ASSERT_TRUE(result);
  EXPECT_EQ(*result, (HttpResponse{200, this->service.url(), "", true}));
}

TYPED_TEST_P(HttpSessionContractTest, ACompletionMaySendTheNextRequest) {
  this->service.setAnswer(200, "");
  std::vector<std::string> order;
  this->session->send(this->request(), [&](const auto&) {
    this->session->send(this->request(), [&](const auto&) { order.push_back("second"); });
    order.push_back("first");
  });
  ASSERT_TRUE(this->comesTrue([&] { return order.size() == 2; }));
  EXPECT_THAT(order, testing::ElementsAre("first", "second"));
}

TYPED_TEST_P(HttpSessionContractTest, ACompletionMayDestroyTheSession) {
  this->service.setAnswer(200, "");
  bool isAnswered = false;
  this->session->send(this->request(), [&](const auto&) {
    this->session.reset();
    isAnswered = true;
  });
  EXPECT_TRUE(this->comesTrue([&] { return isAnswered; }));
}

TYPED_TEST_P(HttpSessionContractTest, CancelsOneRequestWithoutCallingItsCompletion) {
  int cancelled = 0;
  int others = 0;
  const auto first = this->session->send(this->request(), [&](const auto&) { ++cancelled; });
  const auto second = this->session->send(this->request(), [&](const auto&) { ++others; });
  EXPECT_NE(first, second);
  this->session->cancel(first);
  this->session->cancel(first);
  this->service.disappear();
  ASSERT_TRUE(this->comesTrue([&] { return others == 1; }));
  runPendingEvents();
  EXPECT_EQ(cancelled, 0);
  // It has ended.
  this->session->cancel(second);
  EXPECT_EQ(others, 1);
}

TYPED_TEST_P(HttpSessionContractTest, CancelsNoRequestOfAnotherSession) {
  int answers = 0;
  const auto other = this->makeSession();
  const auto own = this->session->send(this->request(), [](const auto&) {});
  other->send(this->request(), [&](const auto&) { ++answers; });
  this->session->cancel(own);
  this->service.disappear();
  EXPECT_TRUE(this->comesTrue([&] { return answers == 1; }));
}

TYPED_TEST_P(HttpSessionContractTest, ACompletionMayCancelAnotherRequest) {
  int answers = 0;
  std::vector<HttpSession::RequestId> ids;
  const auto cancelAll = [&](const auto&) {
    ++answers;
    for (const auto id : ids)
      this->session->cancel(id);
  };
  ids.push_back(this->session->send(this->request(), cancelAll));
  ids.push_back(this->session->send(this->request(), cancelAll));
  this->service.disappear();
  ASSERT_TRUE(this->comesTrue([&] { return answers > 0; }));
  runPendingEvents();
  this->service.work();
  EXPECT_EQ(answers, 1);
}

TYPED_TEST_P(HttpSessionContractTest, DestroyingItCancelsOnlyItsOwnRequests) {
  int ofEnded = 0;
  int ofOther = 0;
  const auto other = this->makeSession();
  this->session->send(this->request(), [&](const auto&) { ++ofEnded; });
  other->send(this->request(), [&](const auto&) { ++ofOther; });
  this->session.reset();
  runPendingEvents();
  EXPECT_EQ(ofOther, 0);
  this->service.disappear();
  ASSERT_TRUE(this->comesTrue([&] { return ofOther == 1; }));
  runPendingEvents();
  EXPECT_EQ(ofEnded, 0);
}

REGISTER_TYPED_TEST_SUITE_P(HttpSessionContractTest, DeliversTheResponseAsynchronouslyWithItsUrl,
                            DeliversTheErrorOfAFailedRequest, DeliversABodyOfTheLimit,
                            DeliversNothingOfABodyAboveTheLimit, ACompletionMaySendTheNextRequest,
                            ACompletionMayDestroyTheSession,
                            CancelsOneRequestWithoutCallingItsCompletion,
                            CancelsNoRequestOfAnotherSession, ACompletionMayCancelAnotherRequest,
                            DestroyingItCancelsOnlyItsOwnRequests);

}  // namespace navora
