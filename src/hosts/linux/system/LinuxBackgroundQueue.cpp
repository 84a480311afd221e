#include "hosts/linux/system/LinuxBackgroundQueue.h"

#include <utility>

#include "support/FatalError.h"

namespace navora {

LinuxBackgroundQueue::~LinuxBackgroundQueue() {
  if (!pool_) return;
  jobs_.dropWaiting();
  constexpr gboolean immediately = FALSE;
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
  if (g_thread_pool_push(pool_, this, nullptr) == FALSE)
    fatalError("The system has no thread left", "LinuxBackgroundQueue", __LINE__);
}

void LinuxBackgroundQueue::workOnNext() {
  if (jobs_.workOnNext()) mainQueue_.async(completeNext_);
}

}  // namespace navora
