#include "end_to_end/driver/Relay.h"

#include <array>
#include <cerrno>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "end_to_end/driver/Wait.h"

namespace navora::driver {

namespace {

sockaddr_in loopback(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<in_port_t>(port));
  return address;
}

int newSocket() {
  const int made = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (made < 0) throw DriverError("No socket for the relay");
  const int on = 1;
  setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  setsockopt(made, SOL_SOCKET, SO_REUSEPORT, &on, sizeof on);
  setsockopt(made, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return made;
}

bool writeAll(int to, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t written = send(to, data, size, MSG_NOSIGNAL);
    if (written <= 0) return false;
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

// A client that has sent everything may still wait for its answer; when the server ends, all is
// over.
Relay::Link::Link(int client, int server)
    : client_(client),
      server_(server),
      requests_([this] { pass(client_, server_, SHUT_WR); }),
      answers_([this] { pass(server_, client_, SHUT_RDWR); }) {}

Relay::Link::~Link() {
  shutdown(client_, SHUT_RDWR);
  shutdown(server_, SHUT_RDWR);
  requests_.join();
  answers_.join();
  close(client_);
  close(server_);
}

void Relay::Link::pass(int from, int to, int ending) {
  std::array<char, 65536> buffer{};
  while (true) {
    const ssize_t size = recv(from, buffer.data(), buffer.size(), 0);
    if (size <= 0) break;
    if (!writeAll(to, buffer.data(), static_cast<std::size_t>(size))) {
      shutdown(from, SHUT_RDWR);
      break;
    }
  }
  shutdown(to, ending);
  --directions_;
}

Relay::Relay(int serverPort) : serverPort_(serverPort) {
  holder_ = boundSocket();
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(holder_, reinterpret_cast<sockaddr*>(&address), &size);
  port_ = ntohs(address.sin_port);
  plugIn();
}

Relay::~Relay() {
  unplug();
  close(holder_);
}

int Relay::boundSocket() const {
  const int made = newSocket();
  const sockaddr_in address = loopback(port_);
  if (bind(made, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    close(made);
    throw DriverError("No port for the relay");
  }
  return made;
}

void Relay::plugIn() {
  if (pluggedIn()) return;
  listener_ = boundSocket();
  if (listen(listener_, 64) != 0) throw DriverError("The relay cannot listen");
  acceptor_ = std::thread([this] { accept(); });
}

void Relay::unplug() {
  if (!pluggedIn()) return;
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  close(listener_);
  listener_ = -1;
  links_.clear();
}

void Relay::accept() {
  while (true) {
    const int client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (client < 0) {
      if (errno == EINTR || errno == ECONNABORTED) continue;
      return;
    }
    const int server = newSocket();
    const sockaddr_in address = loopback(serverPort_);
    if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      close(server);
      close(client);
      continue;
    }
    links_.remove_if([](const auto& link) { return link->ended(); });
    links_.push_back(std::make_unique<Link>(client, server));
  }
}

}  // namespace navora::driver
