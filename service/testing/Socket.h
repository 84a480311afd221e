#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace navora::service {

/// A file descriptor that is closed with its owner.
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

/// Ends waits of many threads at once: everything that waits watches `descriptor()` as well.
class StopSignal {
 public:
  StopSignal();

  void raise();
  bool raised() const;
  /// Readable for ever once the signal was raised.
  int descriptor() const { return readEnd_.number(); }

 private:
  Descriptor readEnd_;
  Descriptor writeEnd_;
};

/// One TCP connection. Every wait also ends when the stop signal is raised.
class Connection {
 public:
  Connection(Descriptor socket, const StopSignal& stop);

  /// Connects to a port of this machine, or nothing.
  static std::optional<Connection> open(int port, const StopSignal& stop);

  /// Appends what arrives next; false at the end, on an error, or after the time-out.
  bool receive(std::string& buffer, std::chrono::milliseconds timeout);

  /// False when the other side does not take all of it.
  bool send(std::string_view bytes);

  /// True when the other side has closed the connection, or the service stops.
  bool ended() const;

  /// Waits this long; false as soon as the connection has ended.
  bool wait(std::chrono::milliseconds duration) const;

  /// Says that nothing more comes and lets the other side read the rest at leisure.
  void finish();

 private:
  bool ready(short events, std::chrono::milliseconds timeout) const;

  Descriptor socket_;
  const StopSignal* stop_;
};

/// A listening socket. Its port can be taken again at once after a restart, but never by two at
/// the same time.
class Listener {
 public:
  /// Listens on a loopback address; port 0 takes a free one. Nothing when that fails.
  static std::optional<Listener> open(const std::string& host, int port);

  int port() const { return port_; }

  /// The next connection; nothing when the stop signal is raised.
  std::optional<Connection> accept(const StopSignal& stop);

 private:
  Listener(Descriptor socket, int port) : socket_(std::move(socket)), port_(port) {}

  Descriptor socket_;
  int port_;
};

}  // namespace navora::service
