#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gmock/gmock.h>

#include "fakes/FakePlatform.h"
#include "fakes/TestUrl.h"
#include "origin/ServiceClient.h"

namespace navora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Failure = ServiceClient::Failure;
using Response = Expected<HttpResponse, Failure>;
using Cookie = Expected<std::optional<std::string>, Failure>;

class ServiceClientTest : public testing::Test {
 protected:
  ServiceClientTest() {
    webView_->cookies = {{"tolvin_session", "abc", "..navora.example", "/", true, std::nullopt}};
  }

  ServiceClient makeClient(CookieDomainDots dots = CookieDomainDots::allAround) {
    return ServiceClient(
        platform_.mainQueue(), platform_.system(),
        [this](const auto& configuration) { return platform_.makeHttpSession(configuration); },
        webView_, origin_,
        {.debugArea = DebugArea::capture, .requestTimeoutSeconds = 7, .cookieDomainDots = dots});
  }
  Task<Response> send(ServiceClient& client) { return client.send({client.url("/api/note")}); }
  // The outcome of a request that receives `result`.
  Response outcomeOf(HttpSession::Result result) {
    ServiceClient client = makeClient();
    const auto task = send(client);
    platform_.network().finish(std::move(result));
    return task.result();
  }

  const Url origin_ = testUrl("https://navora.example/");
  FakePlatform platform_;
  std::shared_ptr<FakeWebView> webView_ =
      std::make_shared<FakeWebView>(platform_.log(), WebViewConfiguration{origin_});
};

TEST_F(ServiceClientTest, ReturnsTheSessionCookieOfTheWebView) {
  ServiceClient client = makeClient();
  const auto cookie = client.sessionCookie();
  EXPECT_FALSE(cookie.isFinished());
  webView_->answerCookies();
  EXPECT_EQ(cookie.result(), Cookie(std::string("tolvin_session=abc")));
}

TEST_F(ServiceClientTest, ComparesCookieDomainsAsItsSettingsSay) {
  ServiceClient client = makeClient(CookieDomainDots::oneLeading);
  const auto cookie = client.sessionCookie();
  webView_->answerCookies();
  EXPECT_EQ(cookie.result(), Cookie(std::nullopt));
}

TEST_F(ServiceClientTest, ReturnsNoCookieOnceTheWebViewIsDestroyed) {
  ServiceClient client = makeClient();
  webView_.reset();
  EXPECT_EQ(client.sessionCookie().result(), Cookie(std::nullopt));
}

TEST_F(ServiceClientTest, ComparesTheCookiesExpiryWithTheTimeOfTheAnswer) {
  webView_->cookies[0].expires = platform_.system().time + std::chrono::seconds(1);
  ServiceClient client = makeClient();
  const auto cookie = client.sessionCookie();
  platform_.system().time += std::chrono::seconds(1);
  webView_->answerCookies();
  EXPECT_EQ(cookie.result(), Cookie(std::nullopt));
}

TEST_F(ServiceClientTest, WaitsTwoSecondsForTheCookies) {
  ServiceClient client = makeClient();
  const auto cookie = client.sessionCookie();
  platform_.mainQueue().advance(std::chrono::milliseconds(1999));
  EXPECT_FALSE(cookie.isFinished());
  platform_.mainQueue().advance(std::chrono::milliseconds(1));
  EXPECT_EQ(cookie.result(), Cookie(Unexpected(Failure::transport)));
}

TEST_F(ServiceClientTest, MakesOneBoundedSessionForTheFirstRequest) {
  ServiceClient client = makeClient();
  EXPECT_THAT(platform_.network().sessions, IsEmpty());
  const auto first = send(client);
  const auto second = send(client);
  EXPECT_THAT(platform_.network().sessions,
              ElementsAre(HttpSessionConfiguration{.requestTimeoutSeconds = 7,
                                                   .resourceTimeoutSeconds = 30,
                                                   .maximumBodyBytes = 1024 * 1024}));
}

TEST_F(ServiceClientTest, ResolvesPathsAgainstTheOrigin) {
  EXPECT_EQ(makeClient().url("/api/note"), testUrl("https://navora.example/api/note"));
}

TEST_F(ServiceClientTest, ReturnsResponsesOfAnyStatus) {
  for (const int status : {200, 302, 401, 404, 500}) {
    const auto response = outcomeOf(HttpResponse{status, origin_, "text"});
    ASSERT_TRUE(response) << status;
    EXPECT_EQ(response->status, status);
    EXPECT_EQ(response->body, "text");
    EXPECT_FALSE(response->bodyTooLarge);
  }
}

TEST_F(ServiceClientTest, CancelsTheRequestOfADestroyedTask) {
  ServiceClient client = makeClient();
  auto dropped = send(client);
  const auto kept = send(client);
  dropped = {};
  ASSERT_EQ(platform_.network().underWay(), 1U);
  platform_.network().answer(200, "text");
  ASSERT_TRUE(kept.isFinished());
  EXPECT_EQ(kept.result()->body, "text");
}

TEST_F(ServiceClientTest, ReportsAFailedTransfer) {
  const auto response = outcomeOf(Unexpected(PlatformError{"Network", -1001, "Timed out"}));
  ASSERT_FALSE(response);
  EXPECT_EQ(response.error(), Failure::transport);
}

TEST_F(ServiceClientTest, RejectsResponsesFromOutsideTheOrigin) {
  for (const auto& url :
       {std::optional<Url>(), std::optional(testUrl("https://remote.example/api/note")),
        std::optional(testUrl("http://navora.example/api/note")),
        std::optional(testUrl("https://user@navora.example/api/note"))}) {
    const auto response = outcomeOf(HttpResponse{401, url, "text"});
    ASSERT_FALSE(response);
    EXPECT_EQ(response.error(), Failure::foreignOrigin);
  }
}

// A session that does not enforce the limit that it was given.
class UnlimitedSession final : public HttpSession {
 public:
  explicit UnlimitedSession(HttpResponse response) : response_(std::move(response)) {}
  RequestId send(const HttpRequest&, Completion completion) override {
    completion(response_);
    return 1;
  }
  void cancel(RequestId) override {}

 private:
  HttpResponse response_;
};

TEST_F(ServiceClientTest, MarksBodiesThatAreTooLargeWhicheverSideStoppedReading) {
  const auto isMarked = [&](HttpResponse received) {
    ServiceClient client(platform_.mainQueue(), platform_.system(),
                         [&](const auto&) { return std::make_unique<UnlimitedSession>(received); },
                         webView_, origin_, {.debugArea = DebugArea::capture});
    const auto task = send(client);
    return task.result()->bodyTooLarge;
  };
  const std::string longest(ServiceClient::maximumBodyBytes, 'x');
  EXPECT_FALSE(isMarked({200, origin_, longest}));
  EXPECT_TRUE(isMarked({200, origin_, longest + "x"}));
  EXPECT_TRUE(isMarked({200, origin_, "", true}));
}

TEST_F(ServiceClientTest, WritesRequestsToTheDebugLogWithoutCookiesAndBodies) {
  ServiceClient client = makeClient();
  const auto cookie = client.sessionCookie();
  webView_->answerCookies();
  (void)outcomeOf(HttpResponse{404, origin_, "secret"});
  (void)outcomeOf(HttpResponse{200, origin_, "", true});
  (void)outcomeOf(HttpResponse{200, std::nullopt, ""});
  (void)outcomeOf(Unexpected(PlatformError{"Network", -1001, "Timed out"}));
  const std::string request = "capture: GET https://navora.example/api/note: ";
  EXPECT_THAT(platform_.system().debugged,
              ElementsAre("capture: The web view has a session cookie", request + "status 404",
                          request + "status 200, body too large",
                          request + "rejected, because the response is not from the service's "
                                    "origin",
                          request + "Timed out"));
}

TEST_F(ServiceClientTest, CancelsItsRequestsWhenItIsDestroyed) {
  std::optional<Task<Response>> task;
  {
    ServiceClient client = makeClient();
    task = send(client);
    EXPECT_EQ(platform_.network().underWay(), 1u);
    task.reset();
  }
  EXPECT_EQ(platform_.network().underWay(), 0u);
}

}  // namespace
}  // namespace navora
