#include "origin/ServiceClient.h"

#include <chrono>
#include <utility>
#include <vector>

#include "origin/DesktopOrigin.h"
#include "platform/TimeLimit.h"
#include "support/FatalError.h"

namespace navora {
namespace {

constexpr double resourceTimeoutSeconds = 30;
constexpr std::chrono::seconds longestCookieWait{2};

// Cancels a request when it is destroyed; does nothing for one that has ended.
class RequestCancellation {
 public:
  explicit RequestCancellation(HttpSession& session) : session_(session) {}
  ~RequestCancellation() {
    if (request) session_.cancel(*request);
  }
  RequestCancellation(const RequestCancellation&) = delete;
  RequestCancellation& operator=(const RequestCancellation&) = delete;

  std::optional<HttpSession::RequestId> request;

 private:
  HttpSession& session_;
};

}  // namespace

ServiceClient::ServiceClient(MainQueue& mainQueue, const System& system,
                             MakeHttpSession makeHttpSession, std::weak_ptr<WebView> webView,
                             Url origin, Settings settings)
    : mainQueue_(mainQueue),
      system_(system),
      makeHttpSession_(std::move(makeHttpSession)),
      webView_(std::move(webView)),
      origin_(std::move(origin)),
      settings_(settings) {}

HttpSession& ServiceClient::session() {
  if (!session_) {
    session_ = makeHttpSession_({.requestTimeoutSeconds = settings_.requestTimeoutSeconds,
                                 .resourceTimeoutSeconds = resourceTimeoutSeconds,
                                 .maximumBodyBytes = maximumBodyBytes});
  }
  return *session_;
}

Url ServiceClient::url(const std::string& path) const {
  auto url = origin_.resolve(path);
  if (!url) fatalError("A built-in path does not resolve", "ServiceClient", __LINE__);
  return *std::move(url);
}

Task<Expected<std::optional<std::string>, ServiceClient::Failure>> ServiceClient::sessionCookie() {
  using Cookies = std::vector<HttpCookie>;
  const auto webView = webView_.lock();
  if (!webView) co_return std::optional<std::string>();
  const auto cookies = co_await awaitWithin<Cookies>(
      mainQueue_, longestCookieWait,
      [&webView](Callback<Cookies> done) { webView->allCookies(std::move(done)); });
  if (!cookies) {
    debug("The web view does not return its cookies");
    co_return Unexpected(Failure::transport);
  }
  auto header = sessionCookieHeader(*cookies, origin_, system_.now(), settings_.cookieDomainDots);
  debug(header ? "The web view has a session cookie" : "The web view has no session cookie");
  co_return header;
}

void ServiceClient::debug(const std::string& line) const {
  system_.debug(settings_.debugArea, line);
}

Task<Expected<HttpResponse, ServiceClient::Failure>> ServiceClient::send(HttpRequest request) {
  HttpSession& session = this->session();
  const std::string name = request.method + " " + request.url.string();
  // Destroying this task cancels the request.
  RequestCancellation cancellation(session);
  auto result = co_await awaitCallback<HttpSession::Result>(
      [&session, &request, &cancellation](Callback<HttpSession::Result> done) {
        cancellation.request = session.send(request, std::move(done));
      });
  // What follows may destroy the session.
  cancellation.request.reset();
  if (!result) {
    debug(name + ": " + result.error().localizedDescription);
    co_return Unexpected(Failure::transport);
  }
  HttpResponse& response = *result;
  if (!response.url || !DesktopOrigin::contains(*response.url, origin_)) {
    debug(name + ": rejected, because the response is not from the service's origin");
    co_return Unexpected(Failure::foreignOrigin);
  }
  response.bodyTooLarge = response.bodyTooLarge || response.body.size() > maximumBodyBytes;
  debug(name + ": status " + std::to_string(response.status) +
        (response.bodyTooLarge ? ", body too large" : ""));
  co_return std::move(response);
}

}  // namespace navora
