#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/PlatformError.h"
#include "support/Expected.h"
#include "support/Url.h"

namespace navora {

struct HttpRequest {
  Url url;
  std::string method = "GET";
  // Sent in this order, as they are.
  std::vector<std::pair<std::string, std::string>> headers = {};
  std::string body = {};
  double timeoutSeconds = 60;

  bool operator==(const HttpRequest&) const = default;
};

struct HttpResponse {
  int status = 0;
  // Where the answer came from; none if it did not come over HTTP.
  std::optional<Url> url;
  std::string body;
  // The answer was longer than the session reads; `body` is empty then.
  bool bodyTooLarge = false;

  bool operator==(const HttpResponse&) const = default;
};

// How requests of one feature are sent: nothing is kept on disk, no cookie is stored or added, no
// cache is asked, and redirects are not followed: the redirecting answer is the response.
struct HttpSessionConfiguration {
  // Without any data for so long, a request fails as timed out, as it does when its own, shorter
  // timeout runs out.
  double requestTimeoutSeconds = 60;
  // For a request from its start to the end of its answer.
  double resourceTimeoutSeconds = 60;
  // The session stops reading beyond.
  std::size_t maximumBodyBytes = 0;

  bool operator==(const HttpSessionConfiguration&) const = default;
};

class HttpSession {
 public:
  using Result = Expected<HttpResponse, PlatformError>;
  using Completion = std::function<void(Result)>;

  virtual ~HttpSession() = default;

  // The completion comes once, later, on the main thread. Destroying the session cancels what is
  // under way, without a completion.
  virtual void send(const HttpRequest& request, Completion completion) = 0;
};

}  // namespace navora
