#include "hosts/linux/updates/ProgramCheck.h"

#include <chrono>
#include <utility>

namespace navora {
namespace {

constexpr std::chrono::seconds timeout{30};

}  // namespace

ProgramCheck::ProgramCheck(const std::filesystem::path& program, MainQueue& mainQueue,
                           Completion completion)
    : completion_(std::move(completion)),
      cancellable_(GObjectPtr<GCancellable>::adopt(g_cancellable_new())) {
  constexpr auto silent = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_SILENCE |
                                                        G_SUBPROCESS_FLAGS_STDERR_SILENCE);
  process_ = GObjectPtr<GSubprocess>::adopt(
      g_subprocess_new(silent, nullptr, program.c_str(), "--self-test", nullptr));
  if (!process_) {
    timer_ = mainQueue.after(std::chrono::milliseconds::zero(), [this] { end(false); });
    return;
  }
  timer_ = mainQueue.after(timeout, [this] { end(false); });
  g_subprocess_wait_check_async(process_.get(), cancellable_.get(), onEnd, this);
}

ProgramCheck::~ProgramCheck() {
  g_cancellable_cancel(cancellable_.get());
  if (process_) g_subprocess_force_exit(process_.get());
}

void ProgramCheck::onEnd(GObject* process, GAsyncResult* result, gpointer self) {
  GErrorPtr error;
  const bool passed =
      g_subprocess_wait_check_finish(G_SUBPROCESS(process), result, error.out()) != FALSE;
  // The destructor cancels the wait, so `self` is dangling then.
  if (error.matches(G_IO_ERROR, G_IO_ERROR_CANCELLED)) return;
  static_cast<ProgramCheck*>(self)->end(passed);
}

void ProgramCheck::end(bool passed) {
  timer_.reset();
  // The completion may destroy this check.
  if (const Completion completion = std::exchange(completion_, nullptr)) completion(passed);
}

}  // namespace navora
