#include "notifications/NotificationClient.h"

#include <cstddef>
#include <utility>

#include "app/DesktopLocale.h"
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

Task<NotificationClient::Reply> NotificationClient::json(std::string path,
                                                         std::optional<std::string> cookie) {
  const auto request = this->request(path, cookie);
  if (!request) co_return Unexpected(PollError::invalidResponse);
  HttpSession& session = this->session();
  const auto result = co_await awaitCallback<HttpSession::Result>(
      [&session, &request](Callback<HttpSession::Result> done) {
        session.send(*request, std::move(done));
      });
  co_return read(result);
}

NotificationClient::Reply NotificationClient::read(const HttpSession::Result& result) const {
  if (!result) return Unexpected(PollError::transport);
  const HttpResponse& response = *result;
  if (!response.url || !DesktopNotificationPolicy::sameOrigin(*response.url, origin_))
    return Unexpected(PollError::invalidResponse);
  if (response.status == 401) return Unexpected(PollError::unauthorized);
  if (response.status != 200 || response.bodyTooLarge || response.body.size() > maximumReplyBytes)
    return Unexpected(PollError::invalidResponse);
  auto body = parseJson(response.body);
  if (!body || !body->is_object()) return Unexpected(PollError::invalidResponse);
  return *std::move(body);
}

}  // namespace navora
