#include "capture/CaptureClient.h"

#include <optional>
#include <utility>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

constexpr ServiceClient::Settings serviceSettings{.debugArea = DebugArea::capture,
                                                  .requestTimeoutSeconds = 20,
                                                  .cookieDomainDots = CookieDomainDots::allAround};

CaptureError untrustedReply() {
  return CaptureError::message(
      [] { return L("Не удалось проверить ответ сервера. Черновик сохранён."); });
}

CaptureError errorFor(ServiceClient::Failure failure) {
  switch (failure) {
    case ServiceClient::Failure::transport:
      return CaptureError::network();
    case ServiceClient::Failure::foreignOrigin:
      break;
  }
  return untrustedReply();
}

Expected<CaptureClient::Reply, CaptureError> readReply(const HttpResponse& response) {
  if (response.bodyTooLarge) return Unexpected(untrustedReply());
  if (response.status == 401) return Unexpected(CaptureError::login());
  auto body = parseJson(response.body);
  if (!body) return Unexpected(CaptureError::network());
  if (!body->is_object()) {
    return Unexpected(CaptureError::message(
        [] { return L("Сервер не подтвердил сохранение. Повторите отправку."); }));
  }
  return CaptureClient::Reply{response.status, *std::move(body)};
}

}  // namespace

CaptureClient::CaptureClient(MainQueue& mainQueue, const System& system,
                             ServiceClient::MakeHttpSession makeHttpSession,
                             std::weak_ptr<WebView> webView, Url origin)
    : service_(mainQueue, system, std::move(makeHttpSession), std::move(webView), std::move(origin),
               serviceSettings) {}

Task<Expected<std::string, CaptureError>> CaptureClient::cookieHeader() {
  auto cookie = co_await service_.sessionCookie();
  if (!cookie) co_return Unexpected(errorFor(cookie.error()));
  if (!*cookie) co_return Unexpected(CaptureError::login());
  co_return **std::move(cookie);
}

HttpRequest CaptureClient::request(const std::string& path, const std::string& cookie,
                                   const Trace& trace) const {
  HttpRequest request{service_.url(path)};
  request.headers = {{"Cookie", cookie},
                     {"Accept", "application/json"},
                     {"Accept-Language", DesktopLocale::current()},
                     {"X-Navora-Surface", "mac_native"},
                     {"X-Navora-Session-Id", trace.sessionId},
                     {"X-Navora-Flow-Id", trace.flowId}};
  return request;
}

Task<Expected<CaptureClient::Reply, CaptureError>> CaptureClient::send(HttpRequest request) {
  const auto response = co_await service_.send(std::move(request));
  if (!response) co_return Unexpected(errorFor(response.error()));
  co_return readReply(*response);
}

Task<Expected<CaptureClient::Reply, CaptureError>> CaptureClient::get(std::string path,
                                                                      std::string cookie,
                                                                      Trace trace) {
  co_return co_await send(request(path, cookie, trace));
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
  co_return co_await send(std::move(posted));
}

Task<> CaptureClient::postTelemetry(std::string cookie, std::string body) {
  HttpRequest request{service_.url("/api/telemetry"), "POST"};
  request.headers.emplace_back("Cookie", std::move(cookie));
  request.headers.emplace_back("Content-Type", "application/json");
  request.body = std::move(body);
  (void)co_await service_.send(std::move(request));
}

}  // namespace navora
