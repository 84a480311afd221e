#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "service/support/Json.h"

namespace navora::service::tests {

/// One answer as it came over the wire.
struct Reply {
  std::string bytes;  ///< Everything until the connection was closed.
  int status = 0;     ///< 0 when what came is no answer.
  std::vector<std::pair<std::string, std::string>> headers;
  std::string body;

  std::string header(std::string_view name) const;
  Json json() const { return Json::parse(body, nullptr, false); }
};

/// A plain TCP connection to the service, for requests that no HTTP library would make and answers
/// that none would accept.
class RawConnection {
 public:
  explicit RawConnection(int port);
  ~RawConnection();
  RawConnection(const RawConnection&) = delete;
  RawConnection& operator=(const RawConnection&) = delete;

  void send(std::string_view bytes) const;
  /// Everything until the other side closes.
  std::string receiveAll() const;
  /// Something, or nothing when the other side has closed.
  std::string receiveSome() const;
  /// Reads until the other side closes and keeps nothing; how many bytes there were.
  std::size_t discardAll() const;
  /// Whether something to read, or the end, arrives within the time.
  bool readable(int milliseconds) const;

 private:
  int socket_;
};

/// Makes requests, one connection each, and keeps the session cookie as a browser would.
class HttpClient {
 public:
  using Headers = std::vector<std::pair<std::string, std::string>>;

  explicit HttpClient(int port) : port_(port) {}

  Reply request(const std::string& method, const std::string& target, const std::string& body = "",
                const Headers& headers = {});
  Reply get(const std::string& target, const Headers& headers = {});
  Reply sendJson(const std::string& method, const std::string& target, const Json& body,
                 Headers headers = {});

  /// Signs in and expects that to work.
  void signIn(const std::string& name = "demo", const std::string& password = "demo");

  std::string requestBytes(const std::string& method, const std::string& target,
                           const std::string& body = "", const Headers& headers = {}) const;
  static Reply parse(std::string bytes);

  int port() const { return port_; }
  std::string cookie;  ///< "name=value"; empty while signed out.

 private:
  int port_;
};

}  // namespace navora::service::tests
