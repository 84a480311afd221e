#include "hosts/linux/system/LinuxMainQueue.h"

#include <utility>

#include <glib.h>

namespace navora {
namespace {

using Work = std::function<void()>;

gboolean runOnce(gpointer work) {
  // A copy: the work may destroy the timer that owns it.
  const Work copy = *static_cast<Work*>(work);
  copy();
  return G_SOURCE_REMOVE;
}

void deleteWork(gpointer work) {
  delete static_cast<Work*>(work);
}

class Timer final : public ObserverToken {
 public:
  Timer(std::chrono::milliseconds delay, Work work)
      : source_(g_timeout_source_new(static_cast<guint>(delay.count()))) {
    g_source_set_callback(source_, runOnce, new Work(std::move(work)), deleteWork);
    g_source_attach(source_, nullptr);
  }
  ~Timer() override {
    g_source_destroy(source_);
    g_source_unref(source_);
  }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

 private:
  GSource* source_;
};

}  // namespace

void LinuxMainQueue::async(Work work) {
  g_idle_add_full(G_PRIORITY_DEFAULT, runOnce, new Work(std::move(work)), deleteWork);
}

std::unique_ptr<ObserverToken> LinuxMainQueue::after(std::chrono::milliseconds delay, Work work) {
  return std::make_unique<Timer>(delay, std::move(work));
}

}  // namespace navora
