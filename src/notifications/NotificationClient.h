#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/HttpSession.h"
#include "platform/Platform.h"
#include "support/Expected.h"
#include "support/Json.h"
#include "support/Task.h"
#include "support/Url.h"

namespace navora {

// Asks the service as the user who is signed in to the web view.
class NotificationClient {
 public:
  enum class PollError {
    // Nobody is signed in.
    unauthorized,
    // Not from the origin, not what was asked for, or too long.
    invalidResponse,
    // No answer.
    transport
  };
  using Body = Expected<std::string, PollError>;
  using Reply = Expected<Json, PollError>;

  NotificationClient(Platform& platform, Url origin);

  // What the service has at `path`, unread. `cookie` is the "Cookie" header, if there is one to
  // send.
  Task<Body> body(std::string path, std::optional<std::string> cookie);
  // The JSON object at `path`; anything else there is an invalid response.
  Task<Reply> json(std::string path, std::optional<std::string> cookie);

 private:
  HttpSession& session();
  std::optional<HttpRequest> request(const std::string& path,
                                     const std::optional<std::string>& cookie) const;
  Body accept(HttpSession::Result result) const;

  Platform& platform_;
  const Url origin_;
  std::unique_ptr<HttpSession> session_;
};

}  // namespace navora
