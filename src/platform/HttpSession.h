#pragma once

#include <cstddef>
#include <cstdint>
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
  // Sent unchanged, in this order.
  std::vector<std::pair<std::string, std::string>> headers = {};
  std::string body = {};
  double timeoutSeconds = 60;

  bool operator==(const HttpRequest&) const = default;
};

struct HttpResponse {
  int status = 0;
  // The URL of the response; nullopt if it was not an HTTP response.
  std::optional<Url> url;
  std::string body;
  // The body exceeded the session's maximumBodyBytes; `body` is empty then.
  bool bodyTooLarge = false;

  bool operator==(const HttpResponse&) const = default;
};

// The limits of a session. Every session is ephemeral: nothing is stored on disk, no cookies are
// stored or sent, no cache is used. Redirects are not followed; the redirect itself is returned as
// the response.
struct HttpSessionConfiguration {
  // Maximum time without receiving data. A request's own timeout applies if it is shorter.
  double requestTimeoutSeconds = 60;
  // Maximum time from the start of a request to the end of its response.
  double resourceTimeoutSeconds = 60;
  // The session stops reading a longer body.
  std::size_t maximumBodyBytes = 0;

  bool operator==(const HttpSessionConfiguration&) const = default;
};

// Sends HTTP requests. Main thread only.
class HttpSession {
 public:
  using Result = Expected<HttpResponse, PlatformError>;
  using Completion = std::function<void(Result)>;
  // Identifies a request within its session; never reused.
  using RequestId = std::uint64_t;

  virtual ~HttpSession() = default;

  // Sends the request. `completion` is called once, on the main thread, after send() has returned.
  // Destroying the session cancels its requests; their completions are not called.
  virtual RequestId send(const HttpRequest& request, Completion completion) = 0;
  // Cancels the request, which stops on the wire; its completion is not called. Does nothing if the
  // request has ended.
  virtual void cancel(RequestId request) = 0;
};

}  // namespace navora
