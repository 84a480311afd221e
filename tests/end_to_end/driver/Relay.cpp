#include "end_to_end/driver/Relay.h"

#include <cerrno>
#include <string>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/support/Wait.h"

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
  if (made < 0) throw TestError("No socket for the relay");
  const int on = 1;
  setsockopt(made, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  setsockopt(made, SOL_SOCKET, SO_REUSEPORT, &on, sizeof on);
  setsockopt(made, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  return made;
}

}  // namespace

// The end of the client's stream ends only the requests; the end of the server's ends both
// directions.
Relay::Link::Link(TcpConnection client, TcpConnection server)
    : client_(std::move(client)),
      server_(std::move(server)),
      requests_([this] { pass(client_, server_, SHUT_WR); }),
      answers_([this] { pass(server_, client_, SHUT_RDWR); }) {}

Relay::Link::~Link() {
  client_.shutdown(SHUT_RDWR);
  server_.shutdown(SHUT_RDWR);
  requests_.join();
  answers_.join();
}

void Relay::Link::pass(const TcpConnection& from, const TcpConnection& to, int ending) {
  for (std::string bytes; !(bytes = from.receiveSome()).empty();) {
    if (to.send(bytes)) continue;
    from.shutdown(SHUT_RDWR);
    break;
  }
  to.shutdown(ending);
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
    throw TestError("No port for the relay");
  }
  return made;
}

void Relay::plugIn() {
  if (pluggedIn()) return;
  listener_ = boundSocket();
  if (listen(listener_, 64) != 0) throw TestError("The relay cannot listen");
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
    const int accepted = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (accepted < 0) {
      if (errno == EINTR || errno == ECONNABORTED) continue;
      return;
    }
    TcpConnection client(accepted);
    TcpConnection server(newSocket());
    const sockaddr_in address = loopback(serverPort_);
    if (connect(server.descriptor(), reinterpret_cast<const sockaddr*>(&address), sizeof address) !=
        0)
      continue;
    links_.remove_if([](const auto& link) { return link->ended(); });
    links_.push_back(std::make_unique<Link>(std::move(client), std::move(server)));
  }
}

}  // namespace navora::driver
