#include "service/testing/Socket.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace navora::service {
namespace {

// Storage for an IPv4 or IPv6 loopback address.
struct Address {
  sockaddr_storage storage{};
  socklen_t size = 0;

  Address(const std::string& host, int port) {
    const auto networkPort = htons(static_cast<std::uint16_t>(port));
    if (host == "::1") {
      auto* address = reinterpret_cast<sockaddr_in6*>(&storage);
      address->sin6_family = AF_INET6;
      address->sin6_addr = in6addr_loopback;
      address->sin6_port = networkPort;
      size = sizeof(sockaddr_in6);
    } else {
      auto* address = reinterpret_cast<sockaddr_in*>(&storage);
      address->sin_family = AF_INET;
      address->sin_addr.s_addr = htonl(INADDR_LOOPBACK);
      address->sin_port = networkPort;
      size = sizeof(sockaddr_in);
    }
  }

  sockaddr* pointer() { return reinterpret_cast<sockaddr*>(&storage); }

  int port() const {
    return ntohs(storage.ss_family == AF_INET6
                     ? reinterpret_cast<const sockaddr_in6*>(&storage)->sin6_port
                     : reinterpret_cast<const sockaddr_in*>(&storage)->sin_port);
  }
};

void enable(int socket, int level, int option) {
  const int on = 1;
  ::setsockopt(socket, level, option, &on, sizeof(on));
}

}  // namespace

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
  std::swap(number_, other.number_);
  return *this;
}

Descriptor::~Descriptor() {
  if (number_ >= 0) ::close(number_);
}

StopSignal::StopSignal() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  readEnd_ = Descriptor(ends[0]);
  writeEnd_ = Descriptor(ends[1]);
}

void StopSignal::raise() {
  // The byte is never read, so that the pipe stays readable for every waiting thread.
  [[maybe_unused]] const auto written = ::write(writeEnd_.number(), "x", 1);
}

bool StopSignal::raised() const {
  pollfd entry{descriptor(), POLLIN, 0};
  return ::poll(&entry, 1, 0) > 0;
}

Connection::Connection(Descriptor socket, const StopSignal& stop)
    : socket_(std::move(socket)), stop_(&stop) {
  enable(socket_.number(), IPPROTO_TCP, TCP_NODELAY);
  ::fcntl(socket_.number(), F_SETFL, O_NONBLOCK);
}

std::optional<Connection> Connection::open(int port, const StopSignal& stop) {
  Address address("127.0.0.1", port);
  Descriptor socket(::socket(AF_INET, SOCK_STREAM, 0));
  if (!socket || ::connect(socket.number(), address.pointer(), address.size) != 0) {
    return std::nullopt;
  }
  return Connection(std::move(socket), stop);
}

bool Connection::ready(short events, std::chrono::milliseconds timeout) const {
  std::array<pollfd, 2> entries{pollfd{socket_.number(), events, 0},
                                pollfd{stop_->descriptor(), POLLIN, 0}};
  const int count = ::poll(entries.data(), entries.size(), static_cast<int>(timeout.count()));
  return count > 0 && entries[1].revents == 0;
}

bool Connection::receive(std::string& buffer, std::chrono::milliseconds timeout) {
  if (!ready(POLLIN, timeout)) return false;
  std::array<char, 16384> chunk{};
  const auto size = ::recv(socket_.number(), chunk.data(), chunk.size(), 0);
  if (size <= 0) return false;
  buffer.append(chunk.data(), static_cast<std::size_t>(size));
  return true;
}

bool Connection::send(std::string_view bytes) {
  constexpr std::chrono::seconds patience(10);
  while (!bytes.empty()) {
    if (!ready(POLLOUT, patience)) return false;
    const auto size = ::send(socket_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (size < 0 && errno == EAGAIN) continue;
    if (size <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(size));
  }
  return true;
}

bool Connection::ended() const {
  if (stop_->raised()) return true;
  char byte = 0;
  const auto size = ::recv(socket_.number(), &byte, 1, MSG_PEEK);
  return size == 0 || (size < 0 && errno != EAGAIN && errno != EINTR);
}

bool Connection::wait(std::chrono::milliseconds duration) const {
  constexpr std::chrono::milliseconds step(10);
  const auto end = std::chrono::steady_clock::now() + duration;
  while (!ended()) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    if (left.count() <= 0) return true;
    pollfd entry{stop_->descriptor(), POLLIN, 0};
    ::poll(&entry, 1, static_cast<int>(std::min(step, left).count()));
  }
  return false;
}

void Connection::finish() {
  ::shutdown(socket_.number(), SHUT_WR);
  std::string rest;
  while (receive(rest, std::chrono::milliseconds(500)))
    rest.clear();
}

std::optional<Listener> Listener::open(const std::string& host, int port) {
  Address address(host, port);
  Descriptor socket(::socket(address.storage.ss_family, SOCK_STREAM, 0));
  if (!socket) return std::nullopt;
  enable(socket.number(), SOL_SOCKET, SO_REUSEADDR);
  if (::bind(socket.number(), address.pointer(), address.size) != 0 ||
      ::listen(socket.number(), SOMAXCONN) != 0 ||
      ::getsockname(socket.number(), address.pointer(), &address.size) != 0) {
    return std::nullopt;
  }
  return Listener(std::move(socket), address.port());
}

std::optional<Connection> Listener::accept(const StopSignal& stop) {
  while (true) {
    std::array<pollfd, 2> entries{pollfd{socket_.number(), POLLIN, 0},
                                  pollfd{stop.descriptor(), POLLIN, 0}};
    ::poll(entries.data(), entries.size(), -1);
    if (entries[1].revents != 0) return std::nullopt;
    if (entries[0].revents == 0) continue;
    Descriptor socket(::accept(socket_.number(), nullptr, nullptr));
    if (socket) return Connection(std::move(socket), stop);
  }
}

}  // namespace navora::service
