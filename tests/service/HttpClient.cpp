#include "HttpClient.h"

#include <array>

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

namespace navora::service::tests {

std::string Reply::header(std::string_view name) const {
  for (const auto& [key, value] : headers) {
    if (key.size() == name.size() && strncasecmp(key.data(), name.data(), name.size()) == 0) {
      return value;
    }
  }
  return {};
}

RawConnection::RawConnection(int port) : socket_(::socket(AF_INET, SOCK_STREAM, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  EXPECT_EQ(::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
}

RawConnection::~RawConnection() {
  ::close(socket_);
}

void RawConnection::send(std::string_view bytes) const {
  while (!bytes.empty()) {
    const auto size = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (size <= 0) return;  // The service may close before it has read everything.
    bytes.remove_prefix(static_cast<std::size_t>(size));
  }
}

std::string RawConnection::receiveSome() const {
  std::array<char, 65536> chunk{};
  const auto size = ::recv(socket_, chunk.data(), chunk.size(), 0);
  return size <= 0 ? std::string() : std::string(chunk.data(), static_cast<std::size_t>(size));
}

std::string RawConnection::receiveAll() const {
  std::string bytes;
  for (std::string more; !(more = receiveSome()).empty();)
    bytes += more;
  return bytes;
}

std::size_t RawConnection::discardAll() const {
  std::array<char, 65536> chunk{};
  std::size_t total = 0;
  for (ssize_t size = 0; (size = ::recv(socket_, chunk.data(), chunk.size(), 0)) > 0;)
    total += static_cast<std::size_t>(size);
  return total;
}

bool RawConnection::readable(int milliseconds) const {
  pollfd entry{socket_, POLLIN, 0};
  return ::poll(&entry, 1, milliseconds) > 0;
}

std::string HttpClient::requestBytes(const std::string& method, const std::string& target,
                                     const std::string& body, const Headers& headers) const {
  std::string bytes = method + " " + target +
                      " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port_) +
                      "\r\nConnection: close\r\n";
  if (!cookie.empty()) bytes += "Cookie: " + cookie + "\r\n";
  for (const auto& [name, value] : headers)
    bytes += name + ": " + value + "\r\n";
  if (!body.empty() || method == "POST" || method == "PUT")
    bytes += "Content-Length: " + std::to_string(body.size()) + "\r\n";
  return bytes + "\r\n" + body;
}

Reply HttpClient::parse(std::string bytes) {
  Reply reply;
  reply.bytes = std::move(bytes);
  const std::size_t headEnd = reply.bytes.find("\r\n\r\n");
  if (!reply.bytes.starts_with("HTTP/1.1 ") || headEnd == std::string::npos) return reply;
  reply.status = std::stoi(reply.bytes.substr(9, 3));
  std::size_t position = reply.bytes.find("\r\n");
  while (position < headEnd) {
    const std::size_t end = reply.bytes.find("\r\n", position + 2);
    const std::string line = reply.bytes.substr(position + 2, end - position - 2);
    const std::size_t colon = line.find(": ");
    reply.headers.emplace_back(line.substr(0, colon), line.substr(colon + 2));
    position = end;
  }
  reply.body = reply.bytes.substr(headEnd + 4);
  return reply;
}

Reply HttpClient::request(const std::string& method, const std::string& target,
                          const std::string& body, const Headers& headers) {
  const RawConnection connection(port_);
  connection.send(requestBytes(method, target, body, headers));
  Reply reply = parse(connection.receiveAll());
  const std::string set = reply.header("Set-Cookie");
  if (!set.empty()) {
    cookie = set.find("Max-Age=0") == std::string::npos ? set.substr(0, set.find(';')) : "";
  }
  return reply;
}

Reply HttpClient::get(const std::string& target, const Headers& headers) {
  return request("GET", target, "", headers);
}

Reply HttpClient::sendJson(const std::string& method, const std::string& target, const Json& body,
                           Headers headers) {
  headers.emplace_back("Content-Type", "application/json");
  return request(method, target, body.dump(), headers);
}

void HttpClient::signIn(const std::string& name, const std::string& password) {
  const Reply reply = request("POST", "/login", "name=" + name + "&password=" + password,
                              {{"Content-Type", "application/x-www-form-urlencoded"}});
  EXPECT_EQ(reply.status, 303);
  EXPECT_FALSE(cookie.empty());
}

}  // namespace navora::service::tests
