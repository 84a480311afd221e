#include "notifications/NotificationClient.h"

#include <cstddef>
#include <utility>

#include "locale/DesktopLocale.h"
#include "notifications/DesktopNotificationPolicy.h"

namespace navora {
namespace {

constexpr std::size_t maximumReplyBytes = 1024 * 1024;
constexpr HttpSessionConfiguration sessionConfiguration{.requestTimeoutSeconds = 15,
                                                        .resourceTimeoutSeconds = 30,
                                                        .maximumBodyBytes = maximumReplyBytes};

}  // namespace

NotificationClient::NotificationClient(Platform& platform, Url origin)
    : platform_(platform), origin_(std::move(origin)) {}

HttpSession& NotificationClient::session() {
  if (!session_) session_ = platform_.makeHttpSession(sessionConfiguration);
  return *session_;
}

std::optional<HttpRequest> NotificationClient::request(
    const std::string& path, const std::optional<std::string>& cookie) const {
  const auto url = origin_.resolve(path);
  if (!url || !DesktopNotificationPolicy::sameOrigin(*url, origin_)) return std::nullopt;
  HttpRequest request{*url};
  request.headers = {{"Accept-Language", DesktopLocale::current()}, {"Accept", "application/json"}};
  if (cookie) request.headers.emplace_back("Cookie", *cookie);
  return request;
}

Task<NotificationClient::Body> NotificationClient::body(std::string path,
                                                        std::optional<std::string> cookie) {
  const auto request = this->request(path, cookie);
  if (!request) co_return Unexpected(PollError::invalidResponse);
  HttpSession& session = this->session();
  auto result = co_await awaitCallback<HttpSession::Result>(
      [&session, &request](Callback<HttpSession::Result> done) {
        session.send(*request, std::move(done));
      });
  co_return accept(std::move(result));
}

NotificationClient::Body NotificationClient::accept(HttpSession::Result result) const {
  if (!result) return Unexpected(PollError::transport);
  HttpResponse& response = *result;
  if (!response.url || !DesktopNotificationPolicy::sameOrigin(*response.url, origin_))
    return Unexpected(PollError::invalidResponse);
  if (response.status == 401) return Unexpected(PollError::unauthorized);
  if (response.status != 200 || response.bodyTooLarge || response.body.size() > maximumReplyBytes)
    return Unexpected(PollError::invalidResponse);
  return std::move(response.body);
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
