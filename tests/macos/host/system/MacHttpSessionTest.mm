#include "hosts/macos/system/MacHttpSession.h"

#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "contracts/MainLoop.h"
#include "fakes/TestUrl.h"
#include "tests/support/Tcp.h"

namespace navora {
namespace {

using testing::HasSubstr;
using testing::Not;

std::string reply(const std::string& body, const std::string& headers = "") {
  return "HTTP/1.1 200 OK\r\n" + headers + "Content-Length: " + std::to_string(body.size()) +
         "\r\n\r\n" + body;
}

class MacHttpSessionTest : public testing::Test {
 protected:
  HttpSession::Result send(const HttpRequest& request,
                           const HttpSessionConfiguration& configuration = {
                               .maximumBodyBytes = 1000}) {
    if (!session_) session_.emplace(configuration);
    std::optional<HttpSession::Result> result;
    session_->send(request, [&](HttpSession::Result given) { result = std::move(given); });
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
    return result.value_or(Unexpected(PlatformError{"test", 0, "no result"}));
  }
  HttpSession::Result get(const TcpServer& server) { return send({.url = testUrl(server.url())}); }

  std::optional<MacHttpSession> session_;
};

TEST_F(MacHttpSessionTest, SendsTheRequestAndDeliversTheResponse) {
  std::string received;
  const std::string body("A\xFF\0\n", 4);
  const TcpServer server([&](TcpConnection& connection) {
    received = connection.readRequest();
    connection.send("HTTP/1.1 201 Created\r\nContent-Length: 4\r\n\r\n" + body);
  });
  const HttpRequest request{.url = testUrl(server.url("/api/a%20b?x=%2F&y")),
                            .method = "POST",
                            .headers = {{"Accept", "application/json"}, {"Cookie", "a=b; c=\"d\""}},
                            .body = std::string("{\"a\":\"\0\xC3\xA4\"}", 11)};
  const auto result = send(request);
  ASSERT_TRUE(result);
  EXPECT_EQ(*result, (HttpResponse{201, request.url, body, false}));
  EXPECT_THAT(received, testing::StartsWith("POST /api/a%20b?x=%2F&y HTTP/1.1\r\n"));
  for (const auto& [name, value] : request.headers) {
    EXPECT_THAT(received, HasSubstr("\r\n" + name + ": " + value + "\r\n"));
  }
  EXPECT_TRUE(received.ends_with("\r\n\r\n" + request.body));
}

TEST_F(MacHttpSessionTest, DoesNotFollowRedirects) {
  const TcpServer server("HTTP/1.1 302 Found\r\nLocation: /other\r\nContent-Length: 2\r\n\r\nno");
  const auto result = get(server);
  ASSERT_TRUE(result);
  EXPECT_EQ(*result, (HttpResponse{302, testUrl(server.url()), "no", false}));
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(MacHttpSessionTest, KeepsNoCookies) {
  std::vector<std::string> received;
  const TcpServer server([&](TcpConnection& connection) {
    received.push_back(connection.readRequest());
    connection.send(reply("x", "Set-Cookie: a=b; Path=/\r\n"));
  });
  ASSERT_TRUE(get(server));
  ASSERT_TRUE(get(server));
  ASSERT_EQ(received.size(), 2U);
  EXPECT_THAT(received[1], Not(HasSubstr("Cookie")));
}

TEST_F(MacHttpSessionTest, StopsReadingAnEndlessBody) {
  const TcpServer server([](TcpConnection& connection) {
    connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 99999999999\r\n\r\n");
    const std::string block(10'000, 'x');
    while (connection.send(block)) {
    }
  });
  const auto result = get(server);
  ASSERT_TRUE(result);
  EXPECT_EQ(*result, (HttpResponse{200, testUrl(server.url()), "", true}));
  EXPECT_TRUE(waitUntil([&] { return server.finished() == 1; }));
}

TEST_F(MacHttpSessionTest, ReportsATruncatedResponse) {
  const TcpServer server("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf");
  const auto result = get(server);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().domain, "NSURLErrorDomain");
}

TEST_F(MacHttpSessionTest, TimesOutWithoutData) {
  const TcpServer server([](const TcpConnection& connection) {
    connection.readRequest();
    connection.receiveAll();
  });
  const auto result = send({.url = testUrl(server.url()), .timeoutSeconds = 0.05});
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, PlatformError::timedOutCode);
}

TEST_F(MacHttpSessionTest, TimesOutWhenTheWholeRequestTakesTooLong) {
  const TcpServer server([](TcpConnection& connection) {
    connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n");
    while (connection.send("x") && !connection.readable(5)) {
    }
  });
  const auto result =
      send({.url = testUrl(server.url())},
           {.requestTimeoutSeconds = 60, .resourceTimeoutSeconds = 0.1, .maximumBodyBytes = 1000});
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, PlatformError::timedOutCode);
}

}  // namespace
}  // namespace navora
