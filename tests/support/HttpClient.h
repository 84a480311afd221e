#pragma once

#include <chrono>
#include <string>

#include "tests/support/HttpMessage.h"
#include "tests/support/Wait.h"

namespace navora {

// Sends requests to a server on this machine, each on a connection of its own, and keeps the
// session cookie as a browser does. Requests are written byte for byte, so that a test can send
// what no HTTP library would.
class HttpClient {
 public:
  // Connects to a port of 127.0.0.1.
  explicit HttpClient(int port) : port_(port) {}
  // `url` begins with "http://127.0.0.1:PORT" or "http://[::1]:PORT".
  explicit HttpClient(const std::string& url);

  // Sends a request and reads until the server closes the connection. Throws TestError if the
  // connection is refused, or if the server has not closed it within `timeout`.
  HttpReply request(const std::string& method, const std::string& target,
                    const std::string& body = "", const HttpHeaders& headers = {},
                    std::chrono::milliseconds timeout = defaultTimeout());
  HttpReply get(const std::string& target, const HttpHeaders& headers = {});
  HttpReply sendJson(const std::string& method, const std::string& target,
                     const nlohmann::json& body, HttpHeaders headers = {},
                     std::chrono::milliseconds timeout = defaultTimeout());

  // Returns a request as request() sends it.
  std::string requestBytes(const std::string& method, const std::string& target,
                           const std::string& body = "", const HttpHeaders& headers = {}) const;

  int port() const { return port_; }
  // Returns "http://HOST:PORT".
  std::string origin() const { return "http://" + authority(); }
  std::string cookie;  // "name=value"; empty while signed out

 private:
  std::string authority() const { return host_ + ':' + std::to_string(port_); }

  // As in a URL: an IPv6 address has brackets.
  std::string host_ = "127.0.0.1";
  int port_ = 0;
};

}  // namespace navora
