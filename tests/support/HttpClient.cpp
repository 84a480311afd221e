#include "tests/support/HttpClient.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "tests/support/Tcp.h"

namespace navora {

namespace {

std::string receiveUntil(const TcpConnection& connection,
                         std::chrono::steady_clock::time_point deadline) {
  std::string bytes;
  while (true) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    if (!connection.readable(std::max(0, static_cast<int>(left.count()))))
      throw TestError("no complete reply in time");
    const std::string more = connection.receiveSome();
    if (more.empty()) return bytes;
    bytes += more;
  }
}

}  // namespace

HttpClient::HttpClient(const std::string& url) {
  constexpr std::string_view scheme = "http://";
  for (const std::string host : {"127.0.0.1", "[::1]"}) {
    const std::string prefix = std::string(scheme) + host + ':';
    if (!url.starts_with(prefix)) continue;
    host_ = host;
    port_ = std::stoi(url.substr(prefix.size()));
    return;
  }
  throw TestError("Not the URL of a server on this machine: " + url);
}

std::string HttpClient::requestBytes(const std::string& method, const std::string& target,
                                     const std::string& body, const HttpHeaders& headers) const {
  std::string bytes =
      method + " " + target + " HTTP/1.1\r\nHost: " + authority() + "\r\nConnection: close\r\n";
  if (!cookie.empty()) bytes += "Cookie: " + cookie + "\r\n";
  for (const auto& [name, value] : headers)
    bytes += name + ": " + value + "\r\n";
  if (!body.empty() || method == "POST" || method == "PUT")
    bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  return bytes + "\r\n" + body;
}

HttpReply HttpClient::request(const std::string& method, const std::string& target,
                              const std::string& body, const HttpHeaders& headers,
                              std::chrono::milliseconds timeout) {
  const auto deadline = std::chrono::steady_clock::now() + timeout;
  const TcpConnection connection = TcpConnection::connect(port_, host_ == "[::1]" ? "::1" : host_);
  // The server may close the connection before it has read everything.
  connection.send(requestBytes(method, target, body, headers));
  HttpReply reply;
  try {
    reply = HttpReply::parse(receiveUntil(connection, deadline));
  } catch (const TestError& error) {
    throw TestError(method + " " + target + ": " + error.what());
  }
  const std::string set = reply.header("Set-Cookie");
  if (!set.empty())
    cookie = set.find("Max-Age=0") == std::string::npos ? set.substr(0, set.find(';')) : "";
  return reply;
}

HttpReply HttpClient::get(const std::string& target, const HttpHeaders& headers) {
  return request("GET", target, "", headers);
}

HttpReply HttpClient::sendJson(const std::string& method, const std::string& target,
                               const nlohmann::json& body, HttpHeaders headers,
                               std::chrono::milliseconds timeout) {
  headers.emplace_back("Content-Type", "application/json");
  return request(method, target, body.dump(), headers, timeout);
}

}  // namespace navora
