#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "support/Url.h"

namespace navora {

// A server on a free loopback port that sends bytes exactly as a test wants them, right or wrong.
class RawServer {
 public:
  class Connection {
   public:
    explicit Connection(int socket) : socket_(socket) {}
    // The next request, byte by byte: its head and as much body as its Content-Length says. Empty
    // when the client has hung up.
    std::string readRequest();
    // False when the client has hung up.
    bool send(std::string_view bytes);

   private:
    const int socket_;
  };
  // Runs on a thread of its own for each connection, which is closed when it returns.
  using Handler = std::function<void(Connection&)>;

  explicit RawServer(Handler handler);
  // Serves every request with `answer` and closes the connection.
  explicit RawServer(std::string answer);
  ~RawServer();
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;

  Url url(const std::string& target = "/") const;
  int connections() const { return connections_; }
  // Connections whose handler has returned.
  int finished() const { return finished_; }

 private:
  void accept();

  Handler handler_;
  int listener_ = -1;
  int port_ = 0;
  std::atomic<int> connections_ = 0;
  std::atomic<int> finished_ = 0;
  std::mutex mutex_;
  std::vector<int> sockets_;
  std::vector<std::thread> threads_;
  std::thread acceptor_;
};

}  // namespace navora
