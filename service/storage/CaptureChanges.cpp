#include "service/storage/CaptureChanges.h"

#include "service/support/Time.h"

namespace navora::service {

// In milliseconds since 1970, so that versions exceed those of an earlier run.
CaptureChanges::CaptureChanges() : start_(static_cast<Version>(currentTime())) {}

CaptureChanges::Changes& CaptureChanges::of(const std::string& userId) const {
  return changes_.try_emplace(userId, Changes{start_, {}}).first->second;
}

void CaptureChanges::raise(const std::string& userId) {
  {
    const std::lock_guard lock(mutex_);
    ++of(userId).version;
  }
  changed_.notify_all();
}

CaptureChanges::Version CaptureChanges::version(const std::string& userId) const {
  const std::lock_guard lock(mutex_);
  return of(userId).version;
}

CaptureChanges::Version CaptureChanges::wait(const std::string& userId, Version known,
                                             std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  Changes& changes = of(userId);
  bool givesUp = false;
  const auto place = changes.waiters.insert(changes.waiters.end(), &givesUp);
  if (changes.waiters.size() > mostWaiters) {
    for (bool* waiter : changes.waiters) {
      if (*waiter) continue;
      *waiter = true;
      break;
    }
    changed_.notify_all();
  }
  changed_.wait_for(lock, timeout, [&] { return closed_ || givesUp || changes.version != known; });
  changes.waiters.erase(place);
  return changes.version;
}

void CaptureChanges::close() {
  {
    const std::lock_guard lock(mutex_);
    closed_ = true;
  }
  changed_.notify_all();
}

}  // namespace navora::service
