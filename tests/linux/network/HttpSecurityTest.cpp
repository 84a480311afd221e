#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <libsoup/soup.h>

#include "hosts/linux/network/LinuxHttpSession.h"
#include "linux/support/EnvironmentVariable.h"
#include "linux/support/MainLoop.h"
#include "linux/support/RawServer.h"
#include "linux/support/TlsServer.h"

namespace navora {
namespace {

// Which way requests go, and whom they trust.
class HttpSecurityTest : public testing::Test {
 protected:
  HttpSession::Result get(const Url& url) {
    std::optional<HttpSession::Result> result;
    session_.send({.url = url}, [&](HttpSession::Result given) { result = std::move(given); });
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
    return result.value_or(Unexpected(PlatformError{"test", 0, "no result"}));
  }

  LinuxHttpSession session_{{.maximumBodyBytes = 1000}};
};

// What a client gets that does not look at certificates.
std::string carelessAnswer(const Url& url) {
  const auto session = GObjectPtr<SoupSession>::adopt(soup_session_new());
  soup_session_set_proxy_resolver(session.get(), nullptr);
  const auto message =
      GObjectPtr<SoupMessage>::adopt(soup_message_new("GET", url.string().c_str()));
  g_signal_connect(message.get(), "accept-certificate",
                   G_CALLBACK(+[](SoupMessage*, GTlsCertificate*, GTlsCertificateFlags,
                                  gpointer) -> gboolean { return TRUE; }),
                   nullptr);
  GObjectPtr<GAsyncResult> arrived;
  soup_session_send_and_read_async(
      session.get(), message.get(), G_PRIORITY_DEFAULT, nullptr,
      [](GObject*, GAsyncResult* result, gpointer place) {
        *static_cast<GObjectPtr<GAsyncResult>*>(place) = GObjectPtr<GAsyncResult>::retain(result);
      },
      &arrived);
  if (!waitUntil([&] { return static_cast<bool>(arrived); })) return {};
  GBytes* body = soup_session_send_and_read_finish(session.get(), arrived.get(), nullptr);
  if (body == nullptr) return {};
  gsize size = 0;
  const auto* bytes = static_cast<const char*>(g_bytes_get_data(body, &size));
  const std::string text(bytes, size);
  g_bytes_unref(body);
  return text;
}

TEST_F(HttpSecurityTest, TellsNothingToAServerWithAnUnknownCertificate) {
  const TlsServer server;
  ASSERT_EQ(carelessAnswer(server.url()), "secret");
  ASSERT_EQ(server.requests(), 1);
  const auto result = get(server.url());
  ASSERT_FALSE(result);
  EXPECT_EQ(result.error().domain, "g-tls-error-quark");
  EXPECT_EQ(result.error().code, G_TLS_ERROR_BAD_CERTIFICATE);
  EXPECT_EQ(server.requests(), 1);
}

TEST_F(HttpSecurityTest, NeverFallsBackToAPlainConnection) {
  const RawServer server([](RawServer::Connection& connection) {
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
    connection.readRequest();
  });
  EXPECT_FALSE(get(*Url::parse("https" + server.url().string().substr(4))));
  EXPECT_GT(server.connections(), 0);
}

// A proxy that answers everything itself, and is the one that the environment names.
class HttpProxyTest : public HttpSecurityTest {
 protected:
  std::string asked_;
  const RawServer proxy_{[this](RawServer::Connection& connection) {
    asked_ = connection.readRequest();
    connection.send("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nproxy");
  }};
  const EnvironmentVariable variable_{"http_proxy", proxy_.url().string()};
  const EnvironmentVariable exceptions_{"no_proxy", std::nullopt};
};

TEST_F(HttpProxyTest, TakesTheProxyOfTheDesktop) {
  const auto result = get(*Url::parse("http://navora.example/notes"));
  ASSERT_TRUE(result) << result.error().localizedDescription;
  EXPECT_EQ(result->body, "proxy");
  EXPECT_THAT(asked_, testing::StartsWith("GET http://navora.example/notes HTTP/1.1\r\n"));
}

TEST_F(HttpProxyTest, ReachesThisMachineWithoutAProxy) {
  const RawServer server("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\ndirect");
  const std::string port = std::to_string(server.url().port().value_or(0));
  for (const std::string host : {"127.0.0.1", "localhost", "LOCALHOST"}) {
    const auto result = get(*Url::parse("http://" + host + ":" + port + "/"));
    ASSERT_TRUE(result) << host << ": " << result.error().localizedDescription;
    EXPECT_EQ(result->body, "direct") << host;
  }
  EXPECT_FALSE(get(*Url::parse("http://[::1]:" + port + "/")));
  EXPECT_EQ(proxy_.connections(), 0);
}

}  // namespace
}  // namespace navora
