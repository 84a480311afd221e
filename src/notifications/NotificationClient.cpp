#include "notifications/NotificationClient.h"

#include <utility>

#include "locale/DesktopLocale.h"

namespace navora {
namespace {

constexpr ServiceClient::Settings serviceSettings{.debugArea = DebugArea::notifications,
                                                  .requestTimeoutSeconds = 15,
                                                  .cookieDomainDots = CookieDomainDots::oneLeading};

NotificationClient::PollError errorFor(ServiceClient::Failure failure) {
  switch (failure) {
    case ServiceClient::Failure::transport:
      return NotificationClient::PollError::transport;
    case ServiceClient::Failure::foreignOrigin:
      break;
  }
  return NotificationClient::PollError::invalidResponse;
}

}  // namespace

NotificationClient::NotificationClient(MainQueue& mainQueue, const System& system,
                                       ServiceClient::MakeHttpSession makeHttpSession,
                                       std::weak_ptr<WebView> webView, Url origin)
    : service_(mainQueue, system, std::move(makeHttpSession), std::move(webView), std::move(origin),
               serviceSettings) {}

Task<Expected<std::optional<std::string>, NotificationClient::PollError>>
NotificationClient::cookieHeader() {
  auto cookie = co_await service_.sessionCookie();
  if (!cookie) co_return Unexpected(errorFor(cookie.error()));
  co_return *std::move(cookie);
}

Task<NotificationClient::Body> NotificationClient::body(std::string path,
                                                        std::optional<std::string> cookie) {
  HttpRequest request{service_.url(path)};
  request.headers = {{"Accept-Language", DesktopLocale::current()}, {"Accept", "application/json"}};
  if (cookie) request.headers.emplace_back("Cookie", *std::move(cookie));
  auto response = co_await service_.send(std::move(request));
  if (!response) co_return Unexpected(errorFor(response.error()));
  if (response->status == 401) co_return Unexpected(PollError::unauthorized);
  if (response->status != 200 || response->bodyTooLarge)
    co_return Unexpected(PollError::invalidResponse);
  co_return std::move(response->body);
}

Task<NotificationClient::Reply> NotificationClient::json(std::string path,
                                                         std::optional<std::string> cookie) {
  const auto body = co_await this->body(std::move(path), std::move(cookie));
  if (!body) co_return Unexpected(body.error());
  auto object = parseJson(*body);
  if (!object || !object->is_object()) co_return Unexpected(PollError::invalidResponse);
  co_return *std::move(object);
}

}  // namespace navora
