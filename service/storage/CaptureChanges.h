#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>

namespace navora::service {

/// Tells those who wait when something about a user's notes has changed.
class CaptureChanges {
 public:
  using Version = std::uint64_t;

  /// How many may wait for one user. A further one makes the oldest give up, so that pages that
  /// went away cannot use up all of the server's threads.
  static constexpr std::size_t mostWaiters = 6;

  CaptureChanges();

  void raise(const std::string& userId);

  /// Grows with every change; never the same again after a restart of the service.
  Version version(const std::string& userId) const;

  /// The version as soon as it differs from `known`; the old one after the time-out, when too many
  /// wait, or after `close`.
  Version wait(const std::string& userId, Version known, std::chrono::milliseconds timeout);

  /// Lets everybody go, now and from now on.
  void close();

 private:
  struct Changes {
    Version version;
    std::list<bool*> waiters;  // What each points to says that it must give up.
  };

  Changes& of(const std::string& userId) const;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  Version start_;
  mutable std::map<std::string, Changes> changes_;
  bool closed_ = false;
};

}  // namespace navora::service
