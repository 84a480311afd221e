#include "linux/support/RawServer.h"

#include <cctype>
#include <stdexcept>
#include <utility>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace navora {
namespace {

std::size_t bodyLength(std::string head) {
  for (char& c : head)
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  constexpr std::string_view name = "\r\ncontent-length:";
  const std::size_t found = head.find(name);
  return found == std::string::npos ? 0 : std::stoul(head.substr(found + name.size()));
}

}  // namespace

std::string RawServer::Connection::readRequest() {
  std::string request;
  std::size_t missing = 1;
  std::size_t head = std::string::npos;
  while (missing > 0) {
    char byte = 0;
    if (::recv(socket_, &byte, 1, 0) != 1) return {};
    request += byte;
    if (head != std::string::npos) {
      --missing;
    } else if (request.ends_with("\r\n\r\n")) {
      head = request.size();
      missing = bodyLength(request);
    }
  }
  return request;
}

bool RawServer::Connection::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

RawServer::RawServer(std::string answer)
    : RawServer([answer = std::move(answer)](Connection& connection) {
        if (!connection.readRequest().empty()) connection.send(answer);
      }) {}

RawServer::RawServer(Handler handler) : handler_(std::move(handler)) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* general = reinterpret_cast<sockaddr*>(&address);
  socklen_t length = sizeof(address);
  if (::bind(listener_, general, length) != 0 || ::listen(listener_, 16) != 0 ||
      ::getsockname(listener_, general, &length) != 0) {
    throw std::runtime_error("There is no free port");
  }
  port_ = ntohs(address.sin_port);
  acceptor_ = std::thread([this] { accept(); });
}

void RawServer::accept() {
  for (int socket = 0; (socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
    const std::lock_guard lock(mutex_);
    ++connections_;
    sockets_.push_back(socket);
    threads_.emplace_back([this, socket] {
      Connection connection(socket);
      handler_(connection);
      ::shutdown(socket, SHUT_RDWR);
      ++finished_;
    });
  }
}

RawServer::~RawServer() {
  ::shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  // Ends what the handlers wait for.
  for (const int socket : sockets_)
    ::shutdown(socket, SHUT_RDWR);
  for (auto& thread : threads_)
    thread.join();
  for (const int socket : sockets_)
    ::close(socket);
  ::close(listener_);
}

Url RawServer::url(const std::string& target) const {
  return *Url::parse("http://127.0.0.1:" + std::to_string(port_) + target);
}

}  // namespace navora
