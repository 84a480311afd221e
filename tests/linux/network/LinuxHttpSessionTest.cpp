#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gio/gio.h>
#include <gmock/gmock.h>

#include "fakes/TestUrl.h"
#include "hosts/linux/network/LinuxHttpSession.h"
#include "hosts/linux/system/LinuxMainQueue.h"
#include "linux/support/MainLoop.h"
#include "tests/support/Tcp.h"

namespace navora {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr std::size_t bodyLimit = 1000;

std::string answer(const std::string& body, const std::string& headers = "") {
  return "HTTP/1.1 200 OK\r\n" + headers + "Content-Length: " + std::to_string(body.size()) +
         "\r\n\r\n" + body;
}

std::string gzipped(const std::string& text) {
  const auto compressor =
      GObjectPtr<GZlibCompressor>::adopt(g_zlib_compressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP, -1));
  std::string result(text.size() + 100, '\0');
  gsize read = 0;
  gsize written = 0;
  EXPECT_EQ(
      g_converter_convert(G_CONVERTER(compressor.get()), text.data(), text.size(), result.data(),
                          result.size(), G_CONVERTER_INPUT_AT_END, &read, &written, nullptr),
      G_CONVERTER_FINISHED);
  result.resize(written);
  return result;
}

class LinuxHttpSessionTest : public testing::Test {
 protected:
  void SetUp() override { makeSession({.maximumBodyBytes = bodyLimit}); }

  void makeSession(const HttpSessionConfiguration& configuration) {
    session_ = std::make_unique<LinuxHttpSession>(configuration, mainQueue_);
  }
  void start(const HttpRequest& request) {
    session_->send(request, [this](HttpSession::Result result) {
      ++completions_;
      result_ = std::move(result);
    });
    EXPECT_EQ(completions_, 0) << "before send() returned";
  }
  HttpSession::Result send(const HttpRequest& request) {
    completions_ = 0;
    result_.reset();
    start(request);
    EXPECT_TRUE(waitUntil([this] { return result_.has_value(); }));
    runPendingEvents();
    EXPECT_EQ(completions_, 1);
    return result_.value_or(Unexpected(PlatformError{"test", 0, "no result"}));
  }
  HttpSession::Result get(const TcpServer& server) { return send({.url = testUrl(server.url())}); }

  static std::string describe(const HttpSession::Result& result) {
    return result ? "status " + std::to_string(result->status) + " body " + result->body
                  : result.error().domain + " " + std::to_string(result.error().code) + " " +
                        result.error().localizedDescription;
  }

  LinuxMainQueue mainQueue_;
  std::unique_ptr<LinuxHttpSession> session_;
  std::optional<HttpSession::Result> result_;
  int completions_ = 0;
};

TEST_F(LinuxHttpSessionTest, ClosesTheConnectionOfACancelledRequest) {
  const TcpServer server([](TcpConnection& connection) {
    while (!connection.readRequest().empty()) {
    }
  });
  const auto request = session_->send({.url = testUrl(server.url())}, [](const auto&) {});
  ASSERT_TRUE(waitUntil([&] { return server.connections() == 1; }));
  EXPECT_EQ(server.finished(), 0);
  session_->cancel(request);
  EXPECT_TRUE(waitUntil([&] { return server.finished() == 1; }));
}

TEST_F(LinuxHttpSessionTest, SendsTheRequestAndDeliversTheResponse) {
  std::string received;
  const std::string body("A\xFF\0\n", 4);
  const TcpServer server([&](TcpConnection& connection) {
    received = connection.readRequest();
    connection.send("HTTP/1.1 201 Created\r\nContent-Length: 4\r\n\r\n" + body);
  });
  const HttpRequest request{.url = testUrl(server.url("/api/a%20b?x=%2F&y")),
                            .method = "POST",
                            .headers = {{"X-First", "1"},
                                        {"Accept", "application/json"},
                                        {"Cookie", "a=b; c=\"d\""},
                                        {"X-Second", "two  words"},
                                        {"Content-Type", "application/json"}},
                            .body = std::string("{\"a\":\"\0\xC3\xA4\"}", 11)};
  const auto result = send(request);
  ASSERT_TRUE(result) << describe(result);
  EXPECT_EQ(*result, (HttpResponse{201, request.url, body, false}));
  EXPECT_THAT(received, testing::StartsWith("POST /api/a%20b?x=%2F&y HTTP/1.1\r\n"));
  for (const auto& [name, value] : request.headers)
    EXPECT_THAT(received, HasSubstr("\r\n" + name + ": " + value + "\r\n"));
  EXPECT_TRUE(received.ends_with("\r\n\r\n" + request.body));
}

TEST_F(LinuxHttpSessionTest, SendsNoBodyIfItIsEmpty) {
  std::string received;
  const TcpServer server([&](TcpConnection& connection) {
    received = connection.readRequest();
    connection.send("HTTP/1.1 204 No Content\r\n\r\n");
  });
  const auto result = send({.url = testUrl(server.url()), .method = "POST"});
  ASSERT_TRUE(result) << describe(result);
  EXPECT_EQ(*result, (HttpResponse{204, testUrl(server.url()), "", false}));
  EXPECT_THAT(received, HasSubstr("\r\nContent-Length: 0\r\n"));
}

TEST_F(LinuxHttpSessionTest, DoesNotFollowRedirects) {
  const TcpServer server("HTTP/1.1 302 Found\r\nLocation: /other\r\nContent-Length: 2\r\n\r\nno");
  const auto result = get(server);
  ASSERT_TRUE(result) << describe(result);
  EXPECT_EQ(*result, (HttpResponse{302, testUrl(server.url()), "no", false}));
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(LinuxHttpSessionTest, DeliversADemandForAPasswordAsTheResponse) {
  const TcpServer server(
      "HTTP/1.1 401 Unauthorized\r\nWWW-Authenticate: Basic realm=\"x\"\r\n"
      "Content-Length: 0\r\n\r\n");
  const auto url = *Url::parse("http://user:secret@" + server.url().substr(7));
  const auto result = send({.url = url});
  ASSERT_TRUE(result) << describe(result);
  EXPECT_EQ(result->status, 401);
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(LinuxHttpSessionTest, KeepsNoCookiesAndNoCache) {
  std::vector<std::string> received;
  const TcpServer server([&](TcpConnection& connection) {
    received.push_back(connection.readRequest());
    connection.send(answer("x",
                           "Set-Cookie: a=b; Path=/\r\nETag: \"1\"\r\n"
                           "Cache-Control: max-age=1000\r\nConnection: close\r\n"));
  });
  ASSERT_TRUE(get(server));
  ASSERT_TRUE(get(server));
  ASSERT_EQ(received.size(), 2U);
  EXPECT_EQ(received[0], received[1]);
  EXPECT_THAT(received[1], Not(HasSubstr("Cookie")));
}

TEST_F(LinuxHttpSessionTest, DeliversABodyOfTheLimit) {
  const std::string body(bodyLimit, 'x');
  const TcpServer server(answer(body));
  const auto result = get(server);
  ASSERT_TRUE(result) << describe(result);
  EXPECT_FALSE(result->bodyTooLarge);
  EXPECT_EQ(result->body, body);
}

TEST_F(LinuxHttpSessionTest, DeliversNothingOfABodyAboveTheLimit) {
  const TcpServer server(answer(std::string(bodyLimit + 1, 'x')));
  const auto result = get(server);
  ASSERT_TRUE(result) << describe(result);
  EXPECT_EQ(*result, (HttpResponse{200, testUrl(server.url()), "", true}));
}

TEST_F(LinuxHttpSessionTest, StopsReadingAnEndlessBody) {
  const TcpServer server([](TcpConnection& connection) {
    connection.readRequest();
    connection.send("HTTP/1.1 500 Oops\r\n\r\n");
    while (connection.send(std::string(4096, 'x'))) {
    }
  });
  const auto result = get(server);
  ASSERT_TRUE(result) << describe(result);
  EXPECT_EQ(*result, (HttpResponse{500, testUrl(server.url()), "", true}));
  EXPECT_TRUE(waitUntil([&] { return server.finished() == 1; })) << "the body is still being read";
}

TEST_F(LinuxHttpSessionTest, LimitsTheDecodedSize) {
  const TcpServer fitting(
      answer(gzipped(std::string(bodyLimit, 'x')), "Content-Encoding: gzip\r\n"));
  const auto fits = get(fitting);
  ASSERT_TRUE(fits) << describe(fits);
  EXPECT_EQ(fits->body, std::string(bodyLimit, 'x'));
  const TcpServer growing(
      answer(gzipped(std::string(bodyLimit + 1, 'x')), "Content-Encoding: gzip\r\n"));
  const auto grows = get(growing);
  ASSERT_TRUE(grows) << describe(grows);
  EXPECT_TRUE(grows->bodyTooLarge);
  EXPECT_EQ(grows->body, "");
}

TEST_F(LinuxHttpSessionTest, ReportsATruncatedResponse) {
  const std::string half = gzipped(std::string(300, 'x')).substr(0, 8);
  const std::vector<std::string> answers = {
      "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf",
      "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n8\r\nhalf",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n0",
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nhalf\r\n0\r\n",
      "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 30\r\n\r\n" + half,
      "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nTransfer-Encoding: chunked\r\n\r\n8\r\n" +
          half + "\r\n",
      "HTTP/1.1 200 OK\r\nContent-Le",
      "nonsense\r\n\r\n",
      "",
  };
  for (const auto& bytes : answers) {
    const TcpServer server(bytes);
    const auto result = get(server);
    EXPECT_FALSE(result) << bytes << "\nreads as " << describe(result);
  }
}

TEST_F(LinuxHttpSessionTest, ReadsChunksToTheirEnd) {
  const TcpServer server(
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\none\r\n4\r\n two\r\n0\r\n\r\n");
  const auto result = get(server);
  ASSERT_TRUE(result) << describe(result);
  EXPECT_EQ(result->body, "one two");
}

TEST_F(LinuxHttpSessionTest, ReusesTheConnectionAfterACompleteResponse) {
  const TcpServer server([](TcpConnection& connection) {
    while (!connection.readRequest().empty()) {
      connection.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\none\r\n0\r\n\r\n");
    }
  });
  for (int count = 0; count < 3; ++count) {
    const auto result = get(server);
    ASSERT_TRUE(result) << describe(result);
    EXPECT_EQ(result->body, "one");
  }
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(LinuxHttpSessionTest, FailsWithoutAServer) {
  std::optional<Url> url;
  {
    const TcpServer server("");
    url = testUrl(server.url());
  }
  const auto result = send({.url = *url});
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().domain, "g-io-error-quark");
  EXPECT_EQ(result.error().code, G_IO_ERROR_CONNECTION_REFUSED);
}

TEST_F(LinuxHttpSessionTest, RefusesInvalidRequests) {
  const TcpServer server(answer(""));
  EXPECT_FALSE(send({.url = *Url::parse("/relative")}));
  EXPECT_FALSE(send({.url = *Url::parse("file:///etc/hostname")}));
  EXPECT_FALSE(send({.url = *Url::parse("httpx://127.0.0.1/")}));
  EXPECT_FALSE(send({.url = testUrl(server.url()), .method = "GET / HTTP/1.1\r\nX"}));
  EXPECT_FALSE(send({.url = testUrl(server.url()), .headers = {{"X-A", "1\r\nX-B: 2"}}}));
  EXPECT_FALSE(send({.url = testUrl(server.url()), .headers = {{"X A", "1"}}}));
  EXPECT_EQ(server.connections(), 0);
}

TEST_F(LinuxHttpSessionTest, TimesOutWithoutAResponse) {
  const TcpServer server([](TcpConnection& connection) {
    while (!connection.readRequest().empty()) {
    }
  });
  makeSession({.requestTimeoutSeconds = 0.1, .maximumBodyBytes = bodyLimit});
  const auto ofSession = send({.url = testUrl(server.url())});
  ASSERT_FALSE(ofSession);
  EXPECT_EQ(ofSession.error().code, PlatformError::timedOutCode);
  makeSession({.maximumBodyBytes = bodyLimit});
  const auto ofRequest = send({.url = testUrl(server.url()), .timeoutSeconds = 0.1});
  ASSERT_FALSE(ofRequest);
  EXPECT_EQ(ofRequest.error().code, PlatformError::timedOutCode);
  EXPECT_TRUE(waitUntil([&] { return server.finished() == 2; })) << "a connection is still open";
}

TEST_F(LinuxHttpSessionTest, TimesOutInTheMiddleOfABody) {
  const TcpServer server([](TcpConnection& connection) {
    connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\nhalf");
    connection.readRequest();
  });
  const auto result = send({.url = testUrl(server.url()), .timeoutSeconds = 0.1});
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, PlatformError::timedOutCode);
}

// Sends a reply of `count` bytes, one every 50 ms, until the client hangs up.
void drip(TcpConnection& connection, int count) {
  connection.readRequest();
  connection.send("HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(count) + "\r\n\r\n");
  for (int sent = 0; sent < count && !connection.readable(50); ++sent)
    connection.send("x");
}

TEST_F(LinuxHttpSessionTest, DoesNotTimeOutWhileDataArrives) {
  const TcpServer server([](TcpConnection& connection) { drip(connection, 30); });
  const auto result = send({.url = testUrl(server.url()), .timeoutSeconds = 1});
  ASSERT_TRUE(result) << describe(result);
  EXPECT_EQ(result->body, std::string(30, 'x'));
}

TEST_F(LinuxHttpSessionTest, TimesOutWhenTheWholeRequestTakesTooLong) {
  const TcpServer server([](TcpConnection& connection) { drip(connection, 900); });
  makeSession({.resourceTimeoutSeconds = 0.3, .maximumBodyBytes = bodyLimit});
  const auto result = send({.url = testUrl(server.url())});
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().code, PlatformError::timedOutCode);
}

TEST_F(LinuxHttpSessionTest, CallsNoCompletionAfterItsDestruction) {
  const TcpServer server([](TcpConnection& connection) {
    while (!connection.readRequest().empty()) {
    }
  });
  start({.url = testUrl(server.url())});
  ASSERT_TRUE(waitUntil([&] { return server.connections() == 1; }));
  start({.url = *Url::parse("/invalid")});
  session_.reset();
  EXPECT_TRUE(waitUntil([&] { return server.finished() == 1; })) << "the connection is still open";
  runPendingEvents();
  EXPECT_EQ(completions_, 0);
}

TEST_F(LinuxHttpSessionTest, ACompletionMayDestroyTheSession) {
  const TcpServer server(answer("x"));
  for (const Url& url : {testUrl(server.url()), *Url::parse("/invalid")}) {
    makeSession({.maximumBodyBytes = bodyLimit});
    bool done = false;
    session_->send({.url = url}, [&](const HttpSession::Result&) {
      session_.reset();
      done = true;
    });
    EXPECT_TRUE(waitUntil([&] { return done; }));
    runPendingEvents();
  }
}

TEST_F(LinuxHttpSessionTest, SendsSeveralRequestsInParallel) {
  const TcpServer server([](TcpConnection& connection) {
    const std::string request = connection.readRequest();
    connection.send(answer(request.substr(0, request.find(" HTTP"))));
  });
  std::vector<std::string> bodies;
  for (const char* target : {"/a", "/b", "/c", "/d"}) {
    session_->send({.url = testUrl(server.url(target))},
                   [&](const HttpSession::Result& result) { bodies.push_back(describe(result)); });
  }
  ASSERT_TRUE(waitUntil([&] { return bodies.size() == 4; }));
  EXPECT_THAT(bodies,
              testing::UnorderedElementsAre("status 200 body GET /a", "status 200 body GET /b",
                                            "status 200 body GET /c", "status 200 body GET /d"));
}

}  // namespace
}  // namespace navora
