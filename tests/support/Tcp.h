#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace navora {

// A TCP connection on the loopback interface, closed when it is destroyed. Two threads may use it
// at once, one to send and one to receive.
class TcpConnection {
 public:
  // Connects to a port of a loopback address, "127.0.0.1" or "::1". Throws TestError if the
  // connection is refused.
  static TcpConnection connect(int port, const std::string& host = "127.0.0.1");
  // Takes ownership of a connected socket.
  explicit TcpConnection(int socket) : socket_(socket) {}
  TcpConnection(TcpConnection&& other) noexcept;
  TcpConnection(const TcpConnection&) = delete;
  TcpConnection& operator=(const TcpConnection&) = delete;
  ~TcpConnection();

  int descriptor() const { return socket_; }

  // Sends all bytes; returns false if the peer closed the connection first.
  bool send(std::string_view bytes) const;
  // Waits for data and returns at most 64 KiB of it; returns an empty string at the end of the
  // stream.
  std::string receiveSome() const;
  // Returns everything until the peer closes the connection.
  std::string receiveAll() const;
  // Reads like receiveAll(), but keeps nothing; returns the number of bytes.
  std::size_t discardAll() const;
  // Returns whether data or the end of the stream arrives within the time.
  bool readable(int milliseconds) const;
  // Ends both directions, or one: SHUT_RD, SHUT_WR or SHUT_RDWR.
  void shutdown(int how) const;

  // Reads the head of an HTTP request, with its blank line, and nothing after it. Returns an empty
  // string if the connection ends first.
  std::string readHead() const;
  // Reads the body that the Content-Length of `head` announces; returns as much of it as arrives.
  std::string readBody(const std::string& head) const;
  // Reads one HTTP request with its body; returns an empty string if the connection ends first.
  std::string readRequest() const;

 private:
  int socket_;
};

// A server on a free port of 127.0.0.1 that runs a handler for each connection.
class TcpServer {
 public:
  // Called for each connection on a thread of its own; the connection is shut down when it returns.
  using Handler = std::function<void(TcpConnection&)>;

  explicit TcpServer(Handler handler);
  // Sends `reply` to the first request of each connection.
  explicit TcpServer(std::string reply);
  // Shuts down all connections and waits for their handlers.
  ~TcpServer();
  TcpServer(const TcpServer&) = delete;
  TcpServer& operator=(const TcpServer&) = delete;

  int port() const { return port_; }
  // Returns "http://127.0.0.1:PORT" followed by `target`.
  std::string url(const std::string& target = "/") const;
  // The number of connections accepted so far.
  int connections() const { return connections_; }
  // The number of connections whose handler has returned.
  int finished() const { return finished_; }

 private:
  struct Session;

  void accept();

  Handler handler_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<int> connections_ = 0;
  std::atomic<int> finished_ = 0;
  // Used by the accepting thread only, and after it by the destructor.
  std::list<std::unique_ptr<Session>> sessions_;
  std::thread acceptor_;
};

}  // namespace navora
