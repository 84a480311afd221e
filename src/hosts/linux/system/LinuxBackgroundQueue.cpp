#include "hosts/linux/system/LinuxBackgroundQueue.h"

#include <utility>

namespace navora {

LinuxBackgroundQueue::~LinuxBackgroundQueue() {
  if (!pool_) return;
  jobs_.dropWaiting();
  // Immediately: the pool would wait forever for a thread for the items that it could not start.
  constexpr gboolean immediately = TRUE;
  constexpr gboolean wait = TRUE;
  g_thread_pool_free(pool_, immediately, wait);
}

void LinuxBackgroundQueue::run(std::function<void()> work, std::function<void()> completion) {
  if (!pool_) {
    constexpr gint threads = 1;
    constexpr gboolean exclusive = FALSE;
    pool_ = g_thread_pool_new(
        [](gpointer, gpointer queue) { static_cast<LinuxBackgroundQueue*>(queue)->workOnNext(); },
        this, threads, exclusive, nullptr);
  }
  jobs_.add(std::move(work), std::move(completion));
  // The pool only counts items; what each one does is in `jobs_`.
  if (g_thread_pool_push(pool_, this, nullptr) != FALSE) return;
  // The system has no thread left. A thread that a later item gets may also do this work.
  ++withoutThread_;
  mainQueue_.async(lifetime_.guard([this] { workOnMainThread(); }));
}

void LinuxBackgroundQueue::drain() {
  while (withoutThread_ > 0)
    workOnMainThread();
  jobs_.waitUntilFinished();
}

void LinuxBackgroundQueue::workOnMainThread() {
  if (withoutThread_ == 0) return;
  --withoutThread_;
  workOnNext();
}

void LinuxBackgroundQueue::workOnNext() {
  if (jobs_.workOnNext()) mainQueue_.async(completeNext_);
}

}  // namespace navora
