#include "tests/support/Tcp.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/support/Wait.h"

namespace navora {

namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<in_port_t>(port));
  return address;
}

sockaddr_in6 ipv6Loopback(int port) {
  sockaddr_in6 address{};
  address.sin6_family = AF_INET6;
  address.sin6_addr = in6addr_loopback;
  address.sin6_port = htons(static_cast<in_port_t>(port));
  return address;
}

std::size_t contentLength(std::string head) {
  for (char& c : head)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  constexpr std::string_view name = "\r\ncontent-length:";
  const std::size_t found = head.find(name);
  return found == std::string::npos ? 0 : std::stoul(head.substr(found + name.size()));
}

}  // namespace

TcpConnection TcpConnection::connect(int port, const std::string& host) {
  const bool isIpv6 = host == "::1";
  TcpConnection connection(::socket(isIpv6 ? AF_INET6 : AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const auto connectTo = [&](const auto& address) {
    return ::connect(connection.socket_, reinterpret_cast<const sockaddr*>(&address),
                     sizeof address) == 0;
  };
  if (!(isIpv6 ? connectTo(ipv6Loopback(port)) : connectTo(loopback(port))))
    throw TestError("Cannot connect to port " + std::to_string(port) + " of " + host);
  return connection;
}

TcpConnection::TcpConnection(TcpConnection&& other) noexcept
    : socket_(std::exchange(other.socket_, -1)) {}

TcpConnection::~TcpConnection() {
  if (socket_ >= 0) ::close(socket_);
}

bool TcpConnection::send(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

std::string TcpConnection::receiveSome() const {
  std::array<char, 65536> chunk{};
  const ssize_t size = ::recv(socket_, chunk.data(), chunk.size(), 0);
  return size <= 0 ? std::string() : std::string(chunk.data(), static_cast<std::size_t>(size));
}

std::string TcpConnection::receiveAll() const {
  std::string bytes;
  for (std::string more; !(more = receiveSome()).empty();)
    bytes += more;
  return bytes;
}

std::size_t TcpConnection::discardAll() const {
  std::array<char, 65536> chunk{};
  std::size_t total = 0;
  for (ssize_t size = 0; (size = ::recv(socket_, chunk.data(), chunk.size(), 0)) > 0;)
    total += static_cast<std::size_t>(size);
  return total;
}

bool TcpConnection::readable(int milliseconds) const {
  pollfd entry{socket_, POLLIN, 0};
  return ::poll(&entry, 1, milliseconds) > 0;
}

void TcpConnection::shutdown(int how) const {
  ::shutdown(socket_, how);
}

// Reads byte by byte, because the bytes after the head belong to the caller.
std::string TcpConnection::readHead() const {
  std::string head;
  while (!head.ends_with("\r\n\r\n")) {
    char byte = 0;
    if (::recv(socket_, &byte, 1, 0) != 1) return {};
    head += byte;
  }
  return head;
}

std::string TcpConnection::readBody(const std::string& head) const {
  std::string body(contentLength(head), '\0');
  std::size_t size = 0;
  while (size < body.size()) {
    const ssize_t received = ::recv(socket_, body.data() + size, body.size() - size, 0);
    if (received <= 0) break;
    size += static_cast<std::size_t>(received);
  }
  body.resize(size);
  return body;
}

std::string TcpConnection::readRequest() const {
  const std::string head = readHead();
  const std::string body = readBody(head);
  return body.size() < contentLength(head) ? std::string() : head + body;
}

struct TcpServer::Session {
  explicit Session(int socket) : connection(socket) {}
  ~Session() {
    connection.shutdown(SHUT_RDWR);
    thread.join();
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  TcpConnection connection;
  std::atomic<bool> ended = false;
  std::thread thread;
};

TcpServer::TcpServer(std::string reply)
    : TcpServer([reply = std::move(reply)](TcpConnection& connection) {
        if (!connection.readRequest().empty()) connection.send(reply);
      }) {}

TcpServer::TcpServer(Handler handler) : handler_(std::move(handler)) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(0);
  auto* general = reinterpret_cast<sockaddr*>(&address);
  socklen_t length = sizeof address;
  if (::bind(listener_, general, length) != 0 || ::listen(listener_, 64) != 0 ||
      ::getsockname(listener_, general, &length) != 0) {
    throw TestError("Cannot listen on a port of the loopback interface");
  }
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { accept(); });
}

TcpServer::~TcpServer() {
  ::shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  for (const auto& session : sessions_)
    session->connection.shutdown(SHUT_RDWR);
  sessions_.clear();
  ::close(listener_);
}

std::string TcpServer::url(const std::string& target) const {
  return "http://127.0.0.1:" + std::to_string(port_) + target;
}

void TcpServer::accept() {
  while (true) {
    const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) {
      if (errno == EINTR || errno == ECONNABORTED) continue;
      return;
    }
    sessions_.remove_if([](const auto& session) { return session->ended.load(); });
    ++connections_;
    Session& session = *sessions_.emplace_back(std::make_unique<Session>(socket));
    session.thread = std::thread([this, &session] {
      handler_(session.connection);
      session.connection.shutdown(SHUT_RDWR);
      ++finished_;
      session.ended = true;
    });
  }
}

}  // namespace navora
