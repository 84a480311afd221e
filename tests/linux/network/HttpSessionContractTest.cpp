#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "contracts/HttpSessionContract.h"
#include "fakes/FakeHttpSession.h"
#include "fakes/TestUrl.h"
#include "hosts/linux/network/LinuxHttpSession.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "linux/support/MainLoop.h"
#include "tests/support/Tcp.h"

namespace navora {
namespace {

// Tests the contract of HttpSession with the fake and the Linux implementation.
class FakeService {
 public:
  std::unique_ptr<HttpSession> makeSession(const HttpSessionConfiguration& configuration) {
    return std::make_unique<FakeHttpSession>(network_, configuration);
  }
  Url url() const { return testUrl("https://service.example/answer"); }

  // Sets the response; until then requests are not answered.
  void setAnswer(int status, std::string body) { answer_ = {status, std::move(body)}; }
  void disappear() { isThere_ = false; }
  void work() {
    while (network_->underWay() > 0 && !isThere_)
      network_->fail(1);
    while (network_->underWay() > 0 && answer_)
      network_->answer(answer_->first, answer_->second);
  }

 private:
  const std::shared_ptr<FakeHttpSession::Network> network_ =
      std::make_shared<FakeHttpSession::Network>();
  std::optional<std::pair<int, std::string>> answer_;
  bool isThere_ = true;
};

class LinuxService : public LoopbackService {
 public:
  std::unique_ptr<HttpSession> makeSession(const HttpSessionConfiguration& configuration) {
    return std::make_unique<LinuxHttpSession>(configuration, mainQueue_);
  }

 private:
  LinuxMainQueue mainQueue_;
};

using Services = testing::Types<FakeService, LinuxService>;
INSTANTIATE_TYPED_TEST_SUITE_P(Linux, HttpSessionContractTest, Services);

}  // namespace
}  // namespace navora
