#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "origin/SessionCookies.h"
#include "platform/DebugArea.h"
#include "platform/HttpSession.h"
#include "platform/MainQueue.h"
#include "platform/System.h"
#include "platform/WebView.h"
#include "support/Expected.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// Sends one feature's requests to the service: fetches the session cookie of the user who is signed
// in to the web view, bounds every transfer in time and size, and rejects responses of any other
// origin. Writes every request to the debug log. Main thread only. The client must outlive its
// tasks.
class ServiceClient {
 public:
  // The longest accepted response body.
  static constexpr std::size_t maximumBodyBytes = 1024 * 1024;

  using MakeHttpSession =
      std::function<std::unique_ptr<HttpSession>(const HttpSessionConfiguration&)>;

  struct Settings {
    // The area of the debug log that the requests belong to.
    DebugArea debugArea;
    // How long a request may receive no data before it fails as timed out.
    double requestTimeoutSeconds = 60;
    CookieDomainDots cookieDomainDots = CookieDomainDots::oneLeading;
  };

  enum class Failure {
    // Nothing was received: no response, or no list of cookies.
    transport,
    // The response has no URL, or one outside the service's origin.
    foreignOrigin
  };

  // `makeHttpSession` is called once, by the first `send`. The queue and the system must
  // outlive the client.
  ServiceClient(MainQueue& mainQueue, const System& system, MakeHttpSession makeHttpSession,
                std::weak_ptr<WebView> webView, Url origin, Settings settings);

  // Returns the value of the "Cookie" header with the user's session, or nullopt if no user is
  // signed in or the web view has been destroyed. Fails if the web view does not answer within two
  // seconds.
  Task<Expected<std::optional<std::string>, Failure>> sessionCookie();

  // Resolves a built-in path against the origin. A path that does not resolve is a fatal error.
  Url url(const std::string& path) const;

  // Sends the request and returns the response of whatever status. `bodyTooLarge` is set for every
  // body of more than `maximumBodyBytes`, whether or not the session stopped reading it. Destroying
  // the task cancels the request.
  Task<Expected<HttpResponse, Failure>> send(HttpRequest request);

 private:
  HttpSession& session();
  void debug(const std::string& line) const;

  MainQueue& mainQueue_;
  const System& system_;
  const MakeHttpSession makeHttpSession_;
  const std::weak_ptr<WebView> webView_;
  const Url origin_;
  const Settings settings_;
  std::unique_ptr<HttpSession> session_;
};

}  // namespace navora
