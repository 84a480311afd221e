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
    // Not a JSON object from the origin.
    invalidResponse,
    // No answer.
    transport
  };
  using Reply = Expected<Json, PollError>;

  NotificationClient(Platform& platform, Url origin);

  // The object at `path`. `cookie` is the "Cookie" header, if there is one to send.
  Task<Reply> json(std::string path, std::optional<std::string> cookie);

 private:
  HttpSession& session();
  std::optional<HttpRequest> request(const std::string& path,
                                     const std::optional<std::string>& cookie) const;
  Reply read(const HttpSession::Result& result) const;

  Platform& platform_;
  const Url origin_;
  std::unique_ptr<HttpSession> session_;
};

}  // namespace navora
