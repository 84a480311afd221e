#pragma once

#include <memory>
#include <optional>
#include <string>

#include "origin/ServiceClient.h"
#include "platform/System.h"
#include "platform/WebView.h"
#include "support/Expected.h"
#include "support/Json.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// The poller's requests to the service, sent as the user who is signed in to the web view.
class NotificationClient {
 public:
  enum class PollError {
    // No user is signed in.
    unauthorized,
    // The response is from another origin, has an unexpected status or content, or is too long.
    invalidResponse,
    // No response was received, or the web view did not return its cookies.
    transport
  };
  using Body = Expected<std::string, PollError>;
  using Reply = Expected<Json, PollError>;

  // The queue and the system must outlive the client.
  NotificationClient(MainQueue& mainQueue, const System& system,
                     ServiceClient::MakeHttpSession makeHttpSession, std::weak_ptr<WebView> webView,
                     Url origin);

  // Returns the value of the "Cookie" header, or nullopt if no user is signed in.
  Task<Expected<std::optional<std::string>, PollError>> cookieHeader();

  // Fetches the body at `path`, unparsed. Without a `cookie` no "Cookie" header is sent.
  Task<Body> body(std::string path, std::optional<std::string> cookie);
  // Fetches the JSON object at `path`; anything else there is an invalid response.
  Task<Reply> json(std::string path, std::optional<std::string> cookie);

 private:
  ServiceClient service_;
};

}  // namespace navora
