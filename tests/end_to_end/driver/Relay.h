#pragma once

#include <atomic>
#include <list>
#include <memory>
#include <thread>

#include "tests/support/Tcp.h"

namespace navora::driver {

// Forwards the connections to a port to a server at another port, byte for byte. It can be
// unplugged and plugged in again while the server runs.
class Relay {
 public:
  // Listens on a free port, plugged in.
  explicit Relay(int serverPort);
  ~Relay();
  Relay(const Relay&) = delete;
  Relay& operator=(const Relay&) = delete;

  int port() const { return port_; }
  bool pluggedIn() const { return listener_ >= 0; }
  // Closes all connections and refuses new ones.
  void unplug();
  void plugIn();

 private:
  // A forwarded connection, with a thread for each direction.
  class Link {
   public:
    Link(TcpConnection client, TcpConnection server);
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    bool ended() const { return directions_ == 0; }

   private:
    void pass(const TcpConnection& from, const TcpConnection& to, int ending);

    TcpConnection client_;
    TcpConnection server_;
    std::atomic<int> directions_ = 2;
    std::thread requests_;
    std::thread answers_;
  };

  int boundSocket() const;
  void accept();

  int serverPort_;
  int port_ = 0;
  int holder_ = -1;  // keeps the port reserved while unplugged
  int listener_ = -1;
  std::thread acceptor_;
  std::list<std::unique_ptr<Link>> links_;  // used by the accepting thread while it runs
};

}  // namespace navora::driver
