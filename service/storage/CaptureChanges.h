#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <list>
#include <map>
#include <mutex>
#include <string>

namespace navora::service {

// Wakes waiting requests when a user's notes have changed.
class CaptureChanges {
 public:
  using Version = std::uint64_t;

  // The number of requests that may wait for one user. One more ends the oldest wait, so that
  // closed pages cannot occupy all of the server's threads.
  static constexpr std::size_t mostWaiters = 6;

  CaptureChanges();

  void raise(const std::string& userId);

  // Increases with every change and is not reused after a restart of the service.
  Version version(const std::string& userId) const;

  // Waits until the version differs from `known` and returns it. Returns the old version after the
  // time-out, when too many requests wait, or after close().
  Version wait(const std::string& userId, Version known, std::chrono::milliseconds timeout);

  // Ends all waits, and every later one at once.
  void close();

 private:
  struct Changes {
    Version version;
    std::list<bool*> waiters;  // Set to true to end the wait.
  };

  Changes& of(const std::string& userId) const;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  Version start_;
  mutable std::map<std::string, Changes> changes_;
  bool closed_ = false;
};

}  // namespace navora::service
