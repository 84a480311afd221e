#include "capture/CaptureClient.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "locale/DesktopLocale.h"
#include "origin/DesktopOrigin.h"
#include "platform/SessionCookies.h"
#include "support/FatalError.h"

namespace navora {
namespace {

constexpr std::size_t maximumReplyBytes = 1024 * 1024;
constexpr HttpSessionConfiguration sessionConfiguration{.requestTimeoutSeconds = 20,
                                                        .resourceTimeoutSeconds = 30,
                                                        .maximumBodyBytes = maximumReplyBytes};

CaptureError untrustedReply() {
  return CaptureError::message(
      [] { return L("Не удалось проверить ответ сервера. Черновик сохранён."); });
}

}  // namespace

CaptureClient::CaptureClient(Platform& platform, std::weak_ptr<WebView> webView, Url origin)
    : platform_(platform), webView_(std::move(webView)), origin_(std::move(origin)) {}

HttpSession& CaptureClient::session() {
  if (!session_) session_ = platform_.makeHttpSession(sessionConfiguration);
  return *session_;
}

Url CaptureClient::resolved(const std::string& path) const {
  const auto url = origin_.resolve(path);
  if (!url) fatalError("A built-in path does not resolve", "CaptureClient", __LINE__);
  return *url;
}

Task<Expected<std::string, CaptureError>> CaptureClient::cookieHeader() {
  const auto webView = webView_.lock();
  if (!webView) co_return Unexpected(CaptureError::login());
  const auto cookies = co_await awaitCallback<std::vector<HttpCookie>>(
      [&webView](Callback<std::vector<HttpCookie>> done) { webView->allCookies(std::move(done)); });
  auto header =
      sessionCookieHeader(cookies, origin_, platform_.system().now(), CookieDomainDots::allAround);
  if (!header) co_return Unexpected(CaptureError::login());
  co_return *std::move(header);
}

HttpRequest CaptureClient::request(const std::string& path, const std::string& cookie,
                                   const Trace& trace) const {
  HttpRequest request{resolved(path)};
  request.headers = {{"Cookie", cookie},
                     {"Accept", "application/json"},
                     {"Accept-Language", DesktopLocale::current()},
                     {"X-Navora-Surface", "mac_native"},
                     {"X-Navora-Session-Id", trace.sessionId},
                     {"X-Navora-Flow-Id", trace.flowId}};
  return request;
}

Task<HttpSession::Result> CaptureClient::send(HttpRequest request) {
  HttpSession& session = this->session();
  co_return co_await awaitCallback<HttpSession::Result>(
      [&session, &request](Callback<HttpSession::Result> done) {
        session.send(request, std::move(done));
      });
}

Task<Expected<CaptureClient::Reply, CaptureError>> CaptureClient::get(std::string path,
                                                                      std::string cookie,
                                                                      Trace trace) {
  const auto result = co_await send(request(path, cookie, trace));
  co_return read(result);
}

Task<Expected<CaptureClient::Reply, CaptureError>> CaptureClient::post(std::string path,
                                                                       std::string cookie,
                                                                       std::string sessionId,
                                                                       CaptureAttempt attempt) {
  const Trace trace{std::move(sessionId), attempt.flowId};
  HttpRequest posted = request(path, cookie, trace);
  posted.method = "POST";
  posted.body = attempt.body;
  posted.headers.emplace_back("Content-Type", "application/json");
  posted.headers.emplace_back("Prefer", "respond-async");
  posted.headers.emplace_back("Idempotency-Key", attempt.key);
  const auto result = co_await send(std::move(posted));
  co_return read(result);
}

Task<> CaptureClient::postTelemetry(std::string cookie, std::string body) {
  HttpRequest request{resolved("/api/telemetry"), "POST"};
  request.headers.emplace_back("Cookie", std::move(cookie));
  request.headers.emplace_back("Content-Type", "application/json");
  request.body = std::move(body);
  (void)co_await send(std::move(request));
}

Expected<CaptureClient::Reply, CaptureError> CaptureClient::read(
    const HttpSession::Result& result) const {
  if (!result) return Unexpected(CaptureError::network());
  const HttpResponse& response = *result;
  if (!response.url || !DesktopOrigin::contains(*response.url, origin_) || response.bodyTooLarge ||
      response.body.size() > maximumReplyBytes) {
    return Unexpected(untrustedReply());
  }
  if (response.status == 401) return Unexpected(CaptureError::login());
  auto body = parseJson(response.body);
  if (!body) return Unexpected(CaptureError::network());
  if (!body->is_object()) {
    return Unexpected(CaptureError::message(
        [] { return L("Сервер не подтвердил сохранение. Повторите отправку."); }));
  }
  return Reply{response.status, *std::move(body)};
}

}  // namespace navora
