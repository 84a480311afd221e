#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace navora::service {

// Owns a file descriptor and closes it.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  ~Descriptor();

  int number() const { return number_; }
  explicit operator bool() const { return number_ >= 0; }

 private:
  int number_ = -1;
};

// Ends the waits of all threads at once: each wait also polls `descriptor()`.
class StopSignal {
 public:
  StopSignal();

  void raise();
  bool raised() const;
  // Readable from the moment the signal is raised.
  int descriptor() const { return readEnd_.number(); }

 private:
  Descriptor readEnd_;
  Descriptor writeEnd_;
};

// A TCP connection. Every wait also ends when the stop signal is raised.
class Connection {
 public:
  Connection(Descriptor socket, const StopSignal& stop);

  // Connects to a port of this machine; returns nullopt on failure.
  static std::optional<Connection> open(int port, const StopSignal& stop);

  // Appends the data that arrives next; returns false at the end, on an error, or after the
  // time-out.
  bool receive(std::string& buffer, std::chrono::milliseconds timeout);

  // Returns false if the peer does not accept all of it.
  bool send(std::string_view bytes);

  // Returns whether the peer has closed the connection or the service is stopping.
  bool ended() const;

  // Waits for this time; returns false as soon as the connection has ended.
  bool wait(std::chrono::milliseconds duration) const;

  // Ends the sending direction and discards what the peer still sends: closing a socket with unread
  // data would reset the connection before the peer has read the reply.
  void finish();

 private:
  bool ready(short events, std::chrono::milliseconds timeout) const;

  Descriptor socket_;
  const StopSignal* stop_;
};

// A listening socket. Its port can be reused at once after a restart, but not shared.
class Listener {
 public:
  // Listens on a loopback address; port 0 chooses a free one. Returns nullopt on failure.
  static std::optional<Listener> open(const std::string& host, int port);

  int port() const { return port_; }

  // Returns the next connection, or nullopt when the stop signal is raised.
  std::optional<Connection> accept(const StopSignal& stop);

 private:
  Listener(Descriptor socket, int port) : socket_(std::move(socket)), port_(port) {}

  Descriptor socket_;
  int port_;
};

}  // namespace navora::service
