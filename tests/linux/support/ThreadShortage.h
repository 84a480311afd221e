#pragma once

namespace navora {

// While it exists, the process can make no thread: pthread_create() fails with EAGAIN, as it does
// at the system's limit, which does not apply to root. GLib's pools keep no idle threads.
class ThreadShortage {
 public:
  ThreadShortage();
  ~ThreadShortage();
  ThreadShortage(const ThreadShortage&) = delete;
  ThreadShortage& operator=(const ThreadShortage&) = delete;

  // Returns how many threads were refused.
  int refused() const;

 private:
  const int maximumIdleThreads_;
};

}  // namespace navora
